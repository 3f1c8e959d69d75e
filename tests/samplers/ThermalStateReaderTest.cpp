#include "samplers/ThermalStateReader.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::ScratchTree;
using Type = ThermalTrip::Type;

namespace {

struct ZoneCase {
    const char* name;
    std::int64_t temperature;
    std::vector<ThermalTrip> trips;
    ThermalState state;
};

class ZoneStateTest : public ::testing::TestWithParam<ZoneCase> {};

TEST_P(ZoneStateTest, TripPointsGiveTheState) {
    EXPECT_EQ(thermalStateForZone(GetParam().temperature, GetParam().trips), GetParam().state);
}

const std::vector<ThermalTrip> kLaptop{{99000, Type::critical},
                                       {95000, Type::hot},
                                       {85000, Type::passive},
                                       {70000, Type::active},
                                       {55000, Type::active}};

INSTANTIATE_TEST_SUITE_P(
    Trips, ZoneStateTest,
    ::testing::Values(
        ZoneCase{"BelowEverything", 54999, kLaptop, ThermalState::nominal},
        ZoneCase{"AtLowestActive", 55000, kLaptop, ThermalState::fair},
        ZoneCase{"AboveHigherActive", 80000, kLaptop, ThermalState::fair},
        ZoneCase{"AtPassive", 85000, kLaptop, ThermalState::serious},
        ZoneCase{"AtHot", 95000, kLaptop, ThermalState::critical},
        ZoneCase{"AtCritical", 120000, kLaptop, ThermalState::critical},
        // x86_pkg_temp's 0 and iwlwifi's −32768000 mean "not set"
        ZoneCase{"PlaceholdersIgnored",
                 45000,
                 {{0, Type::passive}, {-32768000, Type::active}},
                 ThermalState::nominal},
        ZoneCase{"UnknownTypeIgnored", 45000, {{40000, Type::other}}, ThermalState::nominal},
        ZoneCase{"NoTrips", 200000, {}, ThermalState::nominal}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ThermalTripTest, ParsesTheKernelTypeNames) {
    EXPECT_EQ(parseTripType("critical\n"), Type::critical);
    EXPECT_EQ(parseTripType("hot\n"), Type::hot);
    EXPECT_EQ(parseTripType("passive\n"), Type::passive);
    EXPECT_EQ(parseTripType("active"), Type::active);
    EXPECT_EQ(parseTripType("Critical"), Type::other);
    EXPECT_EQ(parseTripType(""), Type::other);
}

void writeZone(const ScratchTree& tree, int n, const QByteArray& temp,
               const std::vector<std::pair<QByteArray, QByteArray>>& trips) {
    const QString zone = "sys/class/thermal/thermal_zone" + QString::number(n);
    tree.write(zone + "/type", "acpitz\n");
    tree.write(zone + "/temp", temp + "\n");
    for (std::size_t i = 0; i < trips.size(); ++i) {
        const QString trip = zone + "/trip_point_" + QString::number(i);
        tree.write(trip + "_type", trips[i].first + "\n");
        tree.write(trip + "_temp", trips[i].second + "\n");
    }
}

void writeThrottle(const ScratchTree& tree, int cpu, const QByteArray& core,
                   const QByteArray& package) {
    const QString dir = "sys/devices/system/cpu/cpu" + QString::number(cpu) + "/thermal_throttle";
    tree.write(dir + "/core_throttle_count", core + "\n");
    tree.write(dir + "/package_throttle_count", package + "\n");
    tree.write(dir + "/core_power_limit_count", "999\n"); // power limits are not thermal
}

TEST(ThermalStateReaderTest, HighestZoneWins) {
    ScratchTree tree;
    writeZone(tree, 0, "60000", {{"active", "50000"}, {"critical", "100000"}});
    writeZone(tree, 1, "90000", {{"passive", "85000"}});
    writeZone(tree, 2, "garbage", {{"critical", "1000"}});  // unreadable: left out
    writeZone(tree, 3, "50000", {{"critical", "garbage"}}); // no usable trip
    ThermalStateReader reader(KernelRoots(tree.root()));
    EXPECT_EQ(reader.read(), ThermalState::serious);
    tree.write("sys/class/thermal/thermal_zone0/temp", "100000\n");
    EXPECT_EQ(reader.read(), ThermalState::critical);
}

TEST(ThermalStateReaderTest, RisingThrottleCounterIsAtLeastSerious) {
    ScratchTree tree;
    writeZone(tree, 0, "60000", {{"active", "50000"}});
    writeThrottle(tree, 0, "3", "12");
    writeThrottle(tree, 1, "0", "12");
    ThermalStateReader reader(KernelRoots(tree.root()));
    EXPECT_EQ(reader.read(), ThermalState::fair); // the first reading is the baseline
    EXPECT_EQ(reader.read(), ThermalState::fair);
    writeThrottle(tree, 1, "1", "12");
    EXPECT_EQ(reader.read(), ThermalState::serious);
    EXPECT_EQ(reader.read(), ThermalState::fair); // no rise since
    writeThrottle(tree, 0, "3", "13");
    tree.write("sys/class/thermal/thermal_zone0/temp", "40000\n");
    EXPECT_EQ(reader.read(), ThermalState::serious);
    writeThrottle(tree, 0, "garbage", "0"); // a counter that went backwards or broke
    EXPECT_EQ(reader.read(), ThermalState::nominal);
}

TEST(ThermalStateReaderTest, NothingExposedIsNominal) {
    ScratchTree tree;
    ThermalStateReader reader(KernelRoots(tree.root()));
    EXPECT_EQ(reader.read(), ThermalState::nominal);
    EXPECT_EQ(reader.read(), ThermalState::nominal);
}

} // namespace

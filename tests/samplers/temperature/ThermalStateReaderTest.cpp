#include "samplers/temperature/ThermalStateReader.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::ScratchTree;
using Type = ThermalTrip::Type;

namespace {

TEST(ThermalStateReaderTest, TripPointsGiveTheZoneState) {
    const std::vector<ThermalTrip> laptop{{99000, Type::critical},
                                          {95000, Type::hot},
                                          {85000, Type::passive},
                                          {70000, Type::active},
                                          {55000, Type::active}};
    const std::tuple<std::int64_t, std::vector<ThermalTrip>, ThermalState> cases[] = {
        {54999, laptop, ThermalState::nominal},
        {55000, laptop, ThermalState::fair}, // the lowest active trip
        {80000, laptop, ThermalState::fair},
        {85000, laptop, ThermalState::serious},
        {95000, laptop, ThermalState::critical},
        {120000, laptop, ThermalState::critical},
        // x86_pkg_temp's 0 and iwlwifi's −32768000 mean "not set"
        {45000, {{0, Type::passive}, {-32768000, Type::active}}, ThermalState::nominal},
        {45000, {{40000, Type::other}}, ThermalState::nominal},
        {200000, {}, ThermalState::nominal}};
    for (const auto& [temperature, trips, state] : cases)
        EXPECT_EQ(thermalStateForZone(temperature, trips), state) << temperature;
    for (const auto& [text, type] : {std::pair{"critical\n", Type::critical},
                                     {"hot\n", Type::hot},
                                     {"passive\n", Type::passive},
                                     {"active", Type::active},
                                     {"Critical", Type::other},
                                     {"", Type::other}})
        EXPECT_EQ(parseTripType(text), type) << text;
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
    EXPECT_EQ(ThermalStateReader(KernelRoots(ScratchTree().root())).read(), ThermalState::nominal)
        << "nothing exposed";
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

} // namespace

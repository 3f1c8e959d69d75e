#include "dashboard/MeterGeometry.h"
#include "dashboard/DiskVolumeUsage.h"
#include "dashboard/FigureSources.h"

#include <gtest/gtest.h>

#include <limits>

using namespace lumetra;

namespace {

TEST(LevelMeterBarsTest, LitCounts) {
    const struct {
        double percentage;
        int segments;
        int lit;
    } cases[] = {
        {0, 7, 0},     {0.1, 7, 1}, {50, 7, 4}, // ceil(3.5)
        {100, 7, 7},   {250, 7, 7}, {-4, 7, 0},  {14.3, 7, 2},
        {14.28, 7, 1}, {50, 0, 0},  {50, -1, 0}, {std::numeric_limits<double>::quiet_NaN(), 7, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(meter::litCount(c.percentage, c.segments), c.lit)
            << c.percentage << "% of " << c.segments;
}

TEST(CapsuleMeterTest, FillIsClampedToTheTrack) {
    const std::pair<double, double> cases[] = {{0, 0},    {50, 22}, {100, 44},
                                               {130, 44}, {-10, 0}, {25, 11}};
    for (const auto& [percentage, width] : cases)
        EXPECT_DOUBLE_EQ(meter::capsuleFillWidth(percentage, 44), width) << percentage;
}

TEST(MetricGridTest, TileHuesFollowThePosition) {
    const std::pair<int, int> cases[] = {{0, 250}, {1, 300}, {2, 45},  {3, 165},
                                         {4, 210}, {5, 15},  {6, 250}, {9, 165}};
    for (const auto& [index, hue] : cases)
        EXPECT_EQ(meter::gridTileHue(index), hue) << "cell " << index;
    // The network tile is the fourth cell of the dashboard's grid.
    const QColor network = meter::gridTileColor(3);
    EXPECT_EQ(network.hsvHue(), 165);
    EXPECT_NEAR(network.hsvSaturationF(), 0.55, 0.01);
    EXPECT_NEAR(network.valueF(), 0.75, 0.01);
    EXPECT_EQ(meter::gridTileColor(6), meter::gridTileColor(0));
}

TEST(DiskVolumeUsageTest, ShareBarAndColour) {
    struct Case {
        std::int64_t total;
        std::int64_t available;
        std::uint64_t used;
        std::optional<double> share;
        const char* percent;
        double fill;
        LevelColor color;
    };
    for (const Case& c : {Case{1000, 500, 500, 50.0, "50%", 0.5, LevelColor::accent},
                          Case{1000, 250, 750, 75.0, "75%", 0.75, LevelColor::orange},
                          Case{1000, 100, 900, 90.0, "90%", 0.9, LevelColor::red},
                          Case{1000, 0, 1000, 100.0, "100%", 1.0, LevelColor::red},
                          Case{1000, 1000, 0, 0.0, "0%", 0.0, LevelColor::accent},
                          // More free than there is: nothing used, an empty bar.
                          Case{1000, 4000, 0, 0.0, "0%", 0.0, LevelColor::accent},
                          // No size at all: no share, 0 %, an empty accent bar.
                          Case{0, 0, 0, std::nullopt, "0%", 0.0, LevelColor::accent}}) {
        SCOPED_TRACE(std::to_string(c.total) + " " + std::to_string(c.available));
        DiskVolume volume;
        volume.totalCapacity = c.total;
        volume.availableCapacity = c.available;
        const DiskVolumeUsage usage = DiskVolumeUsage::of(volume);
        EXPECT_EQ(usage.usedBytes, c.used);
        EXPECT_EQ(usage.share, c.share);
        EXPECT_EQ(usage.percentText(), QLatin1String(c.percent));
        EXPECT_DOUBLE_EQ(usage.fillFraction(), c.fill);
        EXPECT_EQ(usage.fillColor(), c.color);
    }
}

TEST(FigureSourcesTest, TemperatureSensorsGroupedByChip) {
    const struct {
        QStringList sources;
        const char* text;
    } cases[] = {
        {{"k10temp/Tccd1", "k10temp/Tccd2"}, "k10temp · Tccd1, Tccd2"},
        {{"k10temp/Tctl"}, "k10temp · Tctl"},
        {{"coretemp/Package id 0", "acpitz/temp1", "coretemp/Package id 1"},
         "coretemp · Package id 0, Package id 1\nacpitz · temp1"},
        {{"thermal_zone0/x86_pkg_temp"}, "thermal_zone0 · x86_pkg_temp"},
        {{"TC0P"}, "TC0P"},
        {{}, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(temperatureSourcesText(c.sources), QString::fromUtf8(c.text)) << c.text;
}

TEST(FigureSourcesTest, NetworkInterfacesListed) {
    EXPECT_EQ(networkInterfacesText({"enp5s0", "wlp3s0"}),
              QLatin1String("Counted: enp5s0, wlp3s0"));
    EXPECT_EQ(networkInterfacesText({}), QString());
}

} // namespace

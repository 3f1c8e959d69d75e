#include "dashboard/MetricPresentation.h"
#include "format/LevelColor.h"
#include "format/MetricCatalogue.h"
#include "support/Cases.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

TEST(MetricPresentationTest, TemperatureLevelMapsTwentyToHundredOntoTheScale) {
    const std::pair<double, double> cases[] = {{20, 0},    {-5, 0},    {60, 50},
                                               {100, 100}, {110, 100}, {84, 80}};
    for (const auto& [celsius, level] : cases)
        EXPECT_DOUBLE_EQ(temperatureLevel(celsius), level) << celsius;
}

// CPU and memory carry their levels and histories; the network shows the download rate
// without a level.
TEST(MetricPresentationTest, CpuMemoryAndNetworkCarryTheirFigures) {
    SystemMetrics metrics;
    metrics.cpuUsage = 99.5;
    metrics.memoryUsed = 7ull << 30;
    metrics.memoryTotal = 16ull << 30;
    metrics.memoryPercentage = 43.75;
    metrics.downloadBytesPerSecond = 1000;
    metrics.uploadBytesPerSecond = 5'000'000;
    const MetricHistory history = lumetra::testing::history({1, 2, 3});

    const MetricPresentation cpu = cpuPresentation(metrics, history);
    EXPECT_EQ(cpu.valueText, QLatin1String("100%"));
    EXPECT_EQ(cpu.percentage, 99.5);
    EXPECT_FALSE(cpu.detailText);
    EXPECT_EQ(cpu.history, (std::vector<double>{1, 2, 3}));

    const MetricPresentation memory = memoryPresentation(metrics, history);
    EXPECT_EQ(memory.valueText, QLatin1String("44%"));
    EXPECT_EQ(memory.detailText, memoryDetailText(7ull << 30, 16ull << 30));
    EXPECT_EQ(memory.detailText->count(QLatin1String(" / ")), 1);

    const MetricPresentation network = networkPresentation(metrics);
    EXPECT_EQ(network.valueText, QLatin1String("1.0 KB/s"));
    EXPECT_FALSE(network.percentage);
    EXPECT_FALSE(network.detailText);
}

// A reading, or the thermal state in its place; without a level every style draws the figure
// secondary: no bar, no arc.
TEST(MetricPresentationTest, TemperatureIsTheReadingOrTheThermalState) {
    struct Case {
        TemperatureAvailability availability;
        std::optional<double> temperature;
        const char* valueText;
        std::optional<double> percentage;
    };
    using A = TemperatureAvailability;
    for (const Case& c : {Case{A::exactTemperature, 52.4, "52 °C", 40.5},
                          // An exact reading without a value counts as 0 °C.
                          Case{A::exactTemperature, std::nullopt, "0 °C", 0},
                          Case{A::thermalStateOnly, 50, "Unavailable", std::nullopt},
                          Case{A::unavailable, std::nullopt, "Unavailable", std::nullopt}}) {
        SCOPED_TRACE(int(c.availability));
        SystemMetrics metrics;
        metrics.temperatureAvailability = c.availability;
        metrics.temperature = c.temperature;
        metrics.thermalState = ThermalState::serious;
        const MetricPresentation presentation = temperaturePresentation(metrics);
        EXPECT_EQ(presentation.valueText, QString::fromUtf8(c.valueText));
        EXPECT_EQ(presentation.percentage, c.percentage);
        // The thermal state is the detail exactly when there is no reading.
        EXPECT_EQ(presentation.detailText,
                  c.percentage ? std::nullopt : std::optional(label(ThermalState::serious)));
        EXPECT_TRUE(presentation.history.empty());
        EXPECT_EQ(levelColor(presentation.percentage) == LevelColor::secondary, !c.percentage);
    }
}

} // namespace

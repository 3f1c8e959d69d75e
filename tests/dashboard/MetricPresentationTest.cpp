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

TEST(MetricPresentationTest, CpuAndMemoryCarryTheirLevelsAndHistories) {
    SystemMetrics metrics;
    metrics.cpuUsage = 99.5;
    metrics.memoryUsed = 7ull << 30;
    metrics.memoryTotal = 16ull << 30;
    metrics.memoryPercentage = 43.75;
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
}

struct TemperatureCase {
    const char* name;
    TemperatureAvailability availability;
    std::optional<double> temperature;
    const char* valueText;
    std::optional<double> percentage;
    bool hasDetail;
};

class TemperaturePresentationTest : public ::testing::TestWithParam<TemperatureCase> {};

TEST_P(TemperaturePresentationTest, ReadingOrThermalStateFallback) {
    const TemperatureCase& c = GetParam();
    SystemMetrics metrics;
    metrics.temperatureAvailability = c.availability;
    metrics.temperature = c.temperature;
    metrics.thermalState = ThermalState::serious;
    const MetricPresentation presentation = temperaturePresentation(metrics);
    EXPECT_EQ(presentation.valueText, QString::fromUtf8(c.valueText));
    EXPECT_EQ(presentation.percentage, c.percentage);
    EXPECT_EQ(presentation.detailText.has_value(), c.hasDetail);
    if (c.hasDetail) {
        EXPECT_EQ(*presentation.detailText, label(ThermalState::serious));
    }
    EXPECT_TRUE(presentation.history.empty());
    // Without a level every style draws it secondary: no bar, no arc.
    EXPECT_EQ(levelColor(presentation.percentage) == LevelColor::secondary, !c.percentage);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TemperaturePresentationTest,
    ::testing::Values(TemperatureCase{"reading", TemperatureAvailability::exactTemperature, 52.4,
                                      "52 °C", 40.5, false},
                      // An exact reading without a value counts as 0 °C.
                      TemperatureCase{"absentReading", TemperatureAvailability::exactTemperature,
                                      std::nullopt, "0 °C", 0, false},
                      TemperatureCase{"thermalStateOnly", TemperatureAvailability::thermalStateOnly,
                                      50, "Unavailable", std::nullopt, true},
                      TemperatureCase{"unavailable", TemperatureAvailability::unavailable,
                                      std::nullopt, "Unavailable", std::nullopt, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(MetricPresentationTest, NetworkShowsTheDownloadRateWithoutLevel) {
    SystemMetrics metrics;
    metrics.downloadBytesPerSecond = 1000;
    metrics.uploadBytesPerSecond = 5'000'000;
    const MetricPresentation network = networkPresentation(metrics);
    EXPECT_EQ(network.valueText, QLatin1String("1.0 KB/s"));
    EXPECT_FALSE(network.percentage);
    EXPECT_FALSE(network.detailText);
}

} // namespace

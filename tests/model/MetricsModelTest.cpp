#include "model/MemoryPressureLevel.h"
#include "model/MetricHistory.h"
#include "model/SystemMetrics.h"
#include "model/TemperatureText.h"
#include "model/ThermalState.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <unordered_set>
#include <vector>

using namespace lumetra;

namespace {

SystemMetrics sampleRecord() {
    SystemMetrics record;
    record.timestamp = WallClock::now();
    record.cpuUsage = 12.5;
    record.memoryUsed = 4;
    record.memoryTotal = 8;
    record.memoryPercentage = 50;
    return record;
}

TEST(SystemMetricsTest, EmptyRecordHasTheDocumentedValues) {
    const SystemMetrics& empty = SystemMetrics::empty();
    EXPECT_EQ(empty.timestamp, kDistantPast);
    EXPECT_EQ(empty.cpuUsage, 0);
    EXPECT_EQ(empty.memoryUsed, 0u);
    EXPECT_EQ(empty.memoryTotal, 0u);
    EXPECT_EQ(empty.memoryPressure, MemoryPressureLevel::normal);
    EXPECT_FALSE(empty.temperature.has_value());
    EXPECT_EQ(empty.thermalState, ThermalState::nominal);
    EXPECT_EQ(empty.temperatureAvailability, TemperatureAvailability::unavailable);
    EXPECT_EQ(&empty, &SystemMetrics::empty()) << "built once and shared";
}

TEST(SystemMetricsTest, LaterTimestampAloneMakesRecordsUnequal) {
    SystemMetrics later;
    later.timestamp = kDistantPast + std::chrono::nanoseconds(1);
    EXPECT_NE(later, SystemMetrics::empty());
}

TEST(SystemMetricsTest, AbsentTemperatureDiffersFromZero) {
    SystemMetrics a = sampleRecord();
    SystemMetrics b = a;
    b.temperature = 0.0;
    EXPECT_NE(a, b);
    a.temperature = 0.0;
    EXPECT_EQ(a, b);
}

TEST(SystemMetricsTest, NaNFieldsNeverCompareEqual) {
    SystemMetrics a = sampleRecord();
    a.cpuUsage = std::numeric_limits<double>::quiet_NaN();
    const SystemMetrics b = a;
    EXPECT_NE(a, b);
    SystemMetrics c = sampleRecord();
    c.temperature = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(c, SystemMetrics(c));
}

TEST(CircularBufferTest, KeepsTheNewestCapacityValuesOldestFirst) {
    MetricHistory history;
    for (int value = 1; value <= 61; ++value)
        history.append(value);
    std::vector<double> expected(60);
    std::iota(expected.begin(), expected.end(), 2.0);
    EXPECT_EQ(std::vector<double>(history.elements().begin(), history.elements().end()), expected);
    EXPECT_EQ(history.capacity(), 60);
}

TEST(CircularBufferTest, NeverRemovesBeforeReachingCapacity) {
    CircularBuffer<int> buffer(5);
    for (int value = 0; value < 5; ++value) {
        buffer.append(value);
        EXPECT_EQ(buffer.elements().size(), static_cast<std::size_t>(value + 1));
        EXPECT_EQ(buffer.elements().front(), 0);
    }
    std::vector<int> seen(buffer.begin(), buffer.end());
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(CircularBufferTest, ZeroCapacityKeepsNothing) {
    CircularBuffer<int> buffer(0);
    buffer.append(1);
    EXPECT_TRUE(buffer.elements().empty());
}

TEST(EnumerationTest, RawValuesRoundTripCaseSensitively) {
    for (MemoryPressureLevel level : kAllMemoryPressureLevels)
        EXPECT_EQ(memoryPressureLevelFromRaw(rawValue(level)), level);
    for (ThermalState state : kAllThermalStates)
        EXPECT_EQ(thermalStateFromRaw(rawValue(state)), state);
    EXPECT_EQ(thermalStateFromRaw("critical"), ThermalState::critical);
    EXPECT_FALSE(thermalStateFromRaw("Critical"));
    EXPECT_FALSE(memoryPressureLevelFromRaw("Normal"));
    EXPECT_FALSE(memoryPressureLevelFromRaw(""));
    EXPECT_FALSE(thermalStateFromRaw("nominal "));
}

TEST(EnumerationTest, HashingFollowsTheRawValue) {
    EXPECT_EQ(std::hash<ThermalState>{}(ThermalState::fair), std::hash<std::string_view>{}("fair"));
    const std::unordered_set<MemoryPressureLevel> levels(kAllMemoryPressureLevels.begin(),
                                                         kAllMemoryPressureLevels.end());
    EXPECT_EQ(levels.size(), 3u);
}

TEST(EnumerationTest, ThermalLabelsUseTheirKeysAndDefaults) {
    EXPECT_EQ(label(ThermalState::nominal), "Nominal");
    EXPECT_EQ(label(ThermalState::fair), "Fair");
    EXPECT_EQ(label(ThermalState::serious), "Serious");
    EXPECT_EQ(label(ThermalState::critical), "Critical") << "dotted key falls back to its default";
}

struct TemperatureTextCase {
    double celsius;
    const char* expected;
};

class TemperatureTextTest : public ::testing::TestWithParam<TemperatureTextCase> {};

TEST_P(TemperatureTextTest, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(temperatureText(GetParam().celsius), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Examples, TemperatureTextTest,
                         ::testing::Values(TemperatureTextCase{45.5, "46 °C"},
                                           TemperatureTextCase{41.49, "41 °C"},
                                           TemperatureTextCase{-0.4, "0 °C"},
                                           TemperatureTextCase{-0.5, "-1 °C"},
                                           TemperatureTextCase{0.0, "0 °C"},
                                           TemperatureTextCase{114.999, "115 °C"}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

} // namespace

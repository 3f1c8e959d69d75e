#include "model/MetricHistory.h"
#include "model/SystemMetrics.h"
#include "model/TemperatureText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

using namespace lumetra;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Equality is field by field: a timestamp alone tells records apart, an absent temperature
// differs from 0, and NaN never compares equal.
TEST(SystemMetricsTest, EqualityFollowsEveryField) {
    struct Case {
        const char* name;
        std::function<void(SystemMetrics&)> change;
        bool equalToEmpty;
        bool equalToItsCopy;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"unchanged", [](SystemMetrics&) {}, true, true},
             {"1 ns later", [](SystemMetrics& m) { m.timestamp += std::chrono::nanoseconds(1); },
              false, true},
             {"0 °C", [](SystemMetrics& m) { m.temperature = 0.0; }, false, true},
             {"NaN CPU", [](SystemMetrics& m) { m.cpuUsage = kNaN; }, false, false},
             {"NaN °C", [](SystemMetrics& m) { m.temperature = kNaN; }, false, false}}) {
        SystemMetrics changed = SystemMetrics::empty();
        c.change(changed);
        const SystemMetrics copy = changed;
        EXPECT_EQ(changed == SystemMetrics::empty(), c.equalToEmpty) << c.name;
        EXPECT_EQ(changed == copy, c.equalToItsCopy) << c.name;
    }
}

// After n appends a buffer holds the last min(n, capacity) values, oldest first.
TEST(CircularBufferTest, KeepsTheNewestCapacityValuesOldestFirst) {
    for (int capacity : {0, 1, 5}) {
        CircularBuffer<int> buffer(capacity);
        for (int n = 1; n <= capacity + 2; ++n) {
            buffer.append(n);
            std::vector<int> expected;
            for (int value = std::max(1, n - capacity + 1); value <= n && capacity > 0; ++value)
                expected.push_back(value);
            EXPECT_EQ(std::vector<int>(buffer.begin(), buffer.end()), expected)
                << capacity << " after " << n;
        }
    }
}

TEST(TemperatureTextTest, RoundsHalvesAwayFromZero) {
    for (const auto& [celsius, expected] :
         std::initializer_list<std::pair<double, const char*>>{{45.5, "46 °C"},
                                                               {41.49, "41 °C"},
                                                               {-0.4, "0 °C"},
                                                               {-0.5, "-1 °C"},
                                                               {0.0, "0 °C"},
                                                               {114.999, "115 °C"}})
        EXPECT_EQ(temperatureText(celsius), QString::fromUtf8(expected)) << celsius;
}

} // namespace

#include "format/ValueFormatters.h"
#include "format/LevelColor.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace lumetra;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

template <typename Value>
using TextCase = std::pair<Value, const char*>;

// `format` gives each value's expected text.
template <typename Value, std::size_t N, typename Format>
void expectTexts(Format format, const TextCase<Value> (&cases)[N]) {
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(format(value), QString::fromUtf8(expected)) << value;
}

TEST(ValueFormattersTest, WholePercentClampsAndRoundsHalfAwayFromZero) {
    const TextCase<double> cases[] = {{99.5, "100%"}, {250, "100%"}, {-3, "0%"},  {14.4, "14%"},
                                      {46.5, "47%"},  {0, "0%"},     {kNaN, "0%"}};
    expectTexts(wholePercentText, cases);
}

// Decimal units; one decimal below 10 of a unit, chosen before rounding.
TEST(ValueFormattersTest, RatesUseDecimalUnits) {
    const TextCase<double> cases[] = {
        {999.9, "999 B/s"},  {1000, "1.0 KB/s"},  {10'000, "10 KB/s"},     {1500, "1.5 KB/s"},
        {15'000, "15 KB/s"}, {9960, "10.0 KB/s"}, {512, "512 B/s"},        {0, "0 B/s"},
        {-5, "0 B/s"},       {kNaN, "0 B/s"},     {2'500'000, "2.5 MB/s"}, {1e12, "1000 GB/s"},
        {kInfinity, "0 B/s"}};
    expectTexts(formatRate, cases);
}

TEST(ValueFormattersTest, BytesUseBinaryMultiplesAndANumericZero) {
    const TextCase<std::uint64_t> cases[] = {
        {0, "0 bytes"},   {1, "1 byte"},          {1023, "1023 bytes"},   {1024, "1.0 KB"},
        {1536, "1.5 KB"}, {8ull << 30, "8.0 GB"}, {UINT64_MAX, "16.0 EB"}};
    expectTexts(formatBytes, cases);
    EXPECT_EQ(formatUsedOverTotal(3ull << 29, 16ull << 30), "1.5 GB / 16.0 GB");
}

TEST(ValueFormattersTest, LevelBarRoundsTheFilledSegments) {
    const TextCase<double> cases[] = {{47, "▓▓░░░"},  {50, "▓▓▓░░"}, {100, "▓▓▓▓▓"},
                                      {250, "▓▓▓▓▓"}, {-1, "░░░░░"}, {kNaN, "░░░░░"}};
    expectTexts([](double percentage) { return levelBar(5, percentage); }, cases);
    EXPECT_EQ(levelBar(0, 50), "");
}

// The last `count` values at eight levels, out-of-range values clamped and NaN lowest.
TEST(ValueFormattersTest, SparklineMapsValuesToEightLevels) {
    for (const auto& [values, expected] :
         std::initializer_list<std::pair<std::vector<double>, const char*>>{
             {{0, 50, 99.9, 100}, "▁▄▇█"},
             {{1, 2, 3, 100, 100, 100, 100, 100, 100, 100}, "███████"},
             {{0, 0, 0, 10, 20, 30, 40, 50, 60, 70}, "▁▂▃▃▄▅▅"},
             {{-20, 250, kNaN}, "▁█▁"},
             {{}, ""}})
        EXPECT_EQ(sparkline(values, 7), QString::fromUtf8(expected)) << expected;
    EXPECT_EQ(sparkline(std::vector<double>{50}, 0), "");
}

TEST(ValueFormattersTest, LevelColorFollowsTheThresholds) {
    using enum LevelColor;
    const std::pair<std::optional<double>, LevelColor> cases[] = {
        {std::nullopt, secondary}, {74.99, accent}, {75, orange},
        {89.99, orange},           {90, red},       {100, red}};
    for (const auto& [percentage, color] : cases)
        EXPECT_EQ(levelColor(percentage), color) << percentage.value_or(-1);
}

} // namespace

#include "format/ValueFormatters.h"
#include "format/LevelColor.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace lumetra;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct TextCase {
    double value;
    const char* expected;
};

class WholePercentTest : public ::testing::TestWithParam<TextCase> {};
TEST_P(WholePercentTest, ClampsAndRoundsHalfAwayFromZero) {
    EXPECT_EQ(wholePercentText(GetParam().value), QString::fromUtf8(GetParam().expected));
}
INSTANTIATE_TEST_SUITE_P(Examples, WholePercentTest,
                         ::testing::Values(TextCase{99.5, "100%"}, TextCase{250, "100%"},
                                           TextCase{-3, "0%"}, TextCase{14.4, "14%"},
                                           TextCase{46.5, "47%"}, TextCase{0, "0%"},
                                           TextCase{kNaN, "0%"}));

class FormatRateTest : public ::testing::TestWithParam<TextCase> {};
TEST_P(FormatRateTest, UsesDecimalUnitsAndChoosesTheDecimalBeforeRounding) {
    EXPECT_EQ(formatRate(GetParam().value), QString::fromUtf8(GetParam().expected));
}
INSTANTIATE_TEST_SUITE_P(
    Examples, FormatRateTest,
    ::testing::Values(TextCase{999.9, "999 B/s"}, TextCase{1000, "1.0 KB/s"},
                      TextCase{10'000, "10 KB/s"}, TextCase{1500, "1.5 KB/s"},
                      TextCase{15'000, "15 KB/s"}, TextCase{9960, "10.0 KB/s"},
                      TextCase{512, "512 B/s"}, TextCase{0, "0 B/s"}, TextCase{-5, "0 B/s"},
                      TextCase{kNaN, "0 B/s"}, TextCase{2'500'000, "2.5 MB/s"},
                      TextCase{1e12, "1000 GB/s"},
                      TextCase{std::numeric_limits<double>::infinity(), "0 B/s"}));

TEST(FormatBytesTest, UsesBinaryMultiplesAndANumericZero) {
    EXPECT_EQ(formatBytes(0), "0 bytes");
    EXPECT_EQ(formatBytes(1), "1 byte");
    EXPECT_EQ(formatBytes(1023), "1023 bytes");
    EXPECT_EQ(formatBytes(1024), "1.0 KB");
    EXPECT_EQ(formatBytes(1536), "1.5 KB");
    EXPECT_EQ(formatBytes(8ull << 30), "8.0 GB");
    EXPECT_EQ(formatBytes(UINT64_MAX), "16.0 EB");
    EXPECT_EQ(formatUsedOverTotal(3ull << 29, 16ull << 30), "1.5 GB / 16.0 GB");
}

struct SparklineCase {
    std::vector<double> values;
    int count;
    const char* expected;
};
class SparklineTest : public ::testing::TestWithParam<SparklineCase> {};
TEST_P(SparklineTest, MapsValuesToEightLevels) {
    EXPECT_EQ(sparkline(GetParam().values, GetParam().count),
              QString::fromUtf8(GetParam().expected));
}
INSTANTIATE_TEST_SUITE_P(
    Examples, SparklineTest,
    ::testing::Values(SparklineCase{{0, 50, 99.9, 100}, 7, "▁▄▇█"},
                      SparklineCase{{1, 2, 3, 100, 100, 100, 100, 100, 100, 100}, 7, "███████"},
                      SparklineCase{{0, 0, 0, 10, 20, 30, 40, 50, 60, 70}, 7, "▁▂▃▃▄▅▅"},
                      SparklineCase{{-20, 250, kNaN}, 7, "▁█▁"}, SparklineCase{{}, 7, ""},
                      SparklineCase{{50}, 0, ""}));

struct BarCase {
    int count;
    double percentage;
    const char* expected;
};
class LevelBarTest : public ::testing::TestWithParam<BarCase> {};
TEST_P(LevelBarTest, RoundsTheFilledSegments) {
    EXPECT_EQ(levelBar(GetParam().count, GetParam().percentage),
              QString::fromUtf8(GetParam().expected));
}
INSTANTIATE_TEST_SUITE_P(Examples, LevelBarTest,
                         ::testing::Values(BarCase{5, 47, "▓▓░░░"}, BarCase{5, 50, "▓▓▓░░"},
                                           BarCase{5, 100, "▓▓▓▓▓"}, BarCase{5, 250, "▓▓▓▓▓"},
                                           BarCase{5, -1, "░░░░░"}, BarCase{0, 50, ""},
                                           BarCase{5, kNaN, "░░░░░"}));

TEST(LevelColorTest, FollowsTheThresholds) {
    EXPECT_EQ(levelColor(std::nullopt), LevelColor::secondary);
    EXPECT_EQ(levelColor(74.99), LevelColor::accent);
    EXPECT_EQ(levelColor(75), LevelColor::orange);
    EXPECT_EQ(levelColor(89.99), LevelColor::orange);
    EXPECT_EQ(levelColor(90), LevelColor::red);
    EXPECT_EQ(levelColor(100), LevelColor::red);
}

} // namespace

#include "format/MenuBarLabel.h"
#include "format/LevelColor.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

SystemMetrics sample() {
    SystemMetrics metrics;
    metrics.cpuUsage = 14;
    metrics.memoryUsed = 3ull << 30;
    metrics.memoryTotal = 16ull << 30;
    metrics.memoryPercentage = 47;
    metrics.temperature = 52.4;
    return metrics;
}

MetricHistory history(std::initializer_list<double> values) {
    MetricHistory result;
    for (double value : values)
        result.append(value);
    return result;
}

LabelSettings only(std::initializer_list<MenuBarMetric> metrics) {
    LabelSettings settings;
    settings.displayedMetrics = QList<MenuBarMetric>(metrics);
    return settings;
}

TEST(LabelTextTest, DefaultSettingsLine) {
    EXPECT_EQ(labelText(sample(), LabelSettings()),
              QStringLiteral("CPU 14%  RAM 47%  52°C  ↓ 0 B/s  ↑ 0 B/s"));
}

struct LabelCase {
    const char* name;
    LabelSettings settings;
    const char* expected;
};

LabelSettings with(LabelSettings settings, MemoryDisplayFormat memory,
                   TemperatureDisplayFormat temperature, MenuBarSeparator separator) {
    settings.memoryFormat = memory;
    settings.temperatureFormat = temperature;
    settings.separator = separator;
    return settings;
}

class LabelTextFormatsTest : public ::testing::TestWithParam<LabelCase> {};

TEST_P(LabelTextFormatsTest, BuildsTheTextLine) {
    EXPECT_EQ(labelText(sample(), GetParam().settings), QString::fromUtf8(GetParam().expected));
}

using M = MenuBarMetric;
INSTANTIATE_TEST_SUITE_P(
    Formats, LabelTextFormatsTest,
    ::testing::Values(
        LabelCase{"UsedOverTotalHasNoPrefix",
                  with(only({M::memory, M::temperature}), MemoryDisplayFormat::usedOverTotal,
                       TemperatureDisplayFormat::degreesWithUnit, MenuBarSeparator::dot),
                  "3.0 GB / 16.0 GB · 52°C"},
        LabelCase{"UsedOnly",
                  with(only({M::memory}), MemoryDisplayFormat::usedOnly,
                       TemperatureDisplayFormat::degreesOnly, MenuBarSeparator::space),
                  "RAM 3.0 GB"},
        LabelCase{"BothAndLabeledCPU",
                  with(only({M::memory, M::temperature}), MemoryDisplayFormat::both,
                       TemperatureDisplayFormat::labeledCPU, MenuBarSeparator::verticalBar),
                  "RAM 3.0 GB 47% | CPU 52°C"},
        LabelCase{"LabeledTempAndBullet",
                  with(only({M::cpu, M::temperature}), MemoryDisplayFormat::percentageOnly,
                       TemperatureDisplayFormat::labeledTemp, MenuBarSeparator::bullet),
                  "CPU 14% • Temp 52°C"},
        LabelCase{"DuplicatesKept", only({M::cpu, M::cpu}), "CPU 14%  CPU 14%"},
        LabelCase{"NothingEnabled", only({}), "lumetra"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LabelTextTest, MissingTemperatureIsLeftOut) {
    SystemMetrics metrics = sample();
    metrics.temperature.reset();
    EXPECT_EQ(labelText(metrics, only({M::temperature})), "lumetra");
    EXPECT_EQ(labelText(metrics, only({M::cpu, M::temperature, M::upload})),
              QStringLiteral("CPU 14%  ↑ 0 B/s"));
}

TEST(ChipsTest, OneChipPerMetricWithGraphsAndLevels) {
    SystemMetrics metrics = sample();
    metrics.downloadBytesPerSecond = 1500;
    const auto row = chips(metrics, history({0, 50, 99.9, 100}), history({47}), LabelSettings());
    ASSERT_EQ(row.size(), 5);
    EXPECT_EQ(row[0], (MenuBarChipContent{M::cpu, "14%", QStringLiteral("▁▄▇█"), 14.0}));
    EXPECT_EQ(row[1], (MenuBarChipContent{M::memory, "47%", QStringLiteral("▄"), 47.0}));
    EXPECT_EQ(row[2].valueText, QStringLiteral("52°C"));
    EXPECT_DOUBLE_EQ(*row[2].percentage, (52.4 - 20) / 80 * 100);
    EXPECT_EQ(row[3], (MenuBarChipContent{M::download, "1.5 KB/s", {}, std::nullopt}));
    EXPECT_EQ(row[4], (MenuBarChipContent{M::upload, "0 B/s", {}, std::nullopt}));
}

TEST(ChipsTest, MissingTemperatureReadsUnavailable) {
    SystemMetrics metrics = sample();
    metrics.temperature.reset();
    const auto row = chips(metrics, MetricHistory(), MetricHistory(), only({M::temperature}));
    ASSERT_EQ(row.size(), 1);
    EXPECT_EQ(row[0], (MenuBarChipContent{M::temperature, "Unavailable", {}, std::nullopt}));
    EXPECT_EQ(levelColor(row[0].percentage), LevelColor::secondary);
}

TEST(ChipsTest, TemperatureScaleTurnsOrangeAt80AndRedAt92) {
    SystemMetrics metrics = sample();
    for (const auto& [celsius, color] :
         {std::pair{79.9, LevelColor::accent}, std::pair{80.0, LevelColor::orange},
          std::pair{92.0, LevelColor::red}, std::pair{-40.0, LevelColor::accent}}) {
        metrics.temperature = celsius;
        const auto row = chips(metrics, MetricHistory(), MetricHistory(), only({M::temperature}));
        EXPECT_EQ(levelColor(row[0].percentage), color) << celsius;
    }
}

struct LineCase {
    const char* name;
    MenuBarDisplayStyle style;
    const char* expected;
};

class LabelLineTest : public ::testing::TestWithParam<LineCase> {};

TEST_P(LabelLineTest, ChipsInTextForm) {
    SystemMetrics metrics = sample();
    metrics.cpuUsage = 100;
    LabelSettings settings = only({M::cpu, M::temperature, M::download});
    settings.style = GetParam().style;
    EXPECT_EQ(labelLine(metrics, history({0, 50, 100}), MetricHistory(), settings),
              QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Styles, LabelLineTest,
    ::testing::Values(
        LineCase{"Text", MenuBarDisplayStyle::textOnly, "CPU 100%  52°C  ↓ 0 B/s"},
        LineCase{"IconAndText", MenuBarDisplayStyle::iconAndText, "C 100%  T 52°C  ↓ 0 B/s"},
        LineCase{"CompactGraph", MenuBarDisplayStyle::compactGraph, "C ▁▄█ 100%  T 52°C  ↓ 0 B/s"},
        LineCase{"MiniBar", MenuBarDisplayStyle::miniBar, "C ▓▓▓▓▓ 100%  T ▓▓░░░ 52°C  ↓ 0 B/s"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LabelLineTest, FullCPUBarIsRed) {
    SystemMetrics metrics = sample();
    metrics.cpuUsage = 100;
    LabelSettings settings = only({M::cpu});
    settings.style = MenuBarDisplayStyle::miniBar;
    const auto pieces = labelPieces(metrics, MetricHistory(), MetricHistory(), settings);
    ASSERT_EQ(pieces.size(), 1);
    EXPECT_TRUE(pieces[0].text.contains(QStringLiteral("▓▓▓▓▓")));
    EXPECT_EQ(levelColor(pieces[0].percentage), LevelColor::red);
}

} // namespace

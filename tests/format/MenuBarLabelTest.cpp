#include "format/MenuBarLabel.h"
#include "format/LevelColor.h"
#include "support/Cases.h"

#include <gtest/gtest.h>

using namespace lumetra;
using M = MenuBarMetric;

namespace {

using lumetra::testing::history;

SystemMetrics sample(std::optional<double> temperature = 52.4) {
    SystemMetrics metrics;
    metrics.cpuUsage = 14;
    metrics.memoryUsed = 3ull << 30;
    metrics.memoryTotal = 16ull << 30;
    metrics.memoryPercentage = 47;
    metrics.temperature = temperature;
    return metrics;
}

const MetricHistory kNone;

LabelSettings only(std::initializer_list<M> metrics,
                   MemoryDisplayFormat memory = MemoryDisplayFormat::percentageOnly,
                   TemperatureDisplayFormat temperature = TemperatureDisplayFormat::degreesWithUnit,
                   MenuBarSeparator separator = MenuBarSeparator::space) {
    LabelSettings settings;
    settings.displayedMetrics = QList<M>(metrics);
    settings.memoryFormat = memory;
    settings.temperatureFormat = temperature;
    settings.separator = separator;
    return settings;
}

// The text line in every memory, temperature and separator format; a missing temperature is
// left out, and nothing to show leaves the name.
TEST(MenuBarLabelTest, BuildsTheTextLine) {
    using Memory = MemoryDisplayFormat;
    using Temperature = TemperatureDisplayFormat;
    using Separator = MenuBarSeparator;
    struct Case {
        LabelSettings settings;
        const char* expected;
        std::optional<double> temperature = 52.4;
    };
    const Case cases[] = {
        {LabelSettings(), "CPU 14%  RAM 47%  52°C  ↓ 0 B/s  ↑ 0 B/s"},
        {only({M::memory, M::temperature}, Memory::usedOverTotal, Temperature::degreesWithUnit,
              Separator::dot),
         "3.0 GB / 16.0 GB · 52°C"},
        {only({M::memory, M::temperature}, Memory::usedOnly, Temperature::degreesOnly),
         "RAM 3.0 GB  52°"},
        {only({M::memory, M::temperature}, Memory::both, Temperature::labeledCPU,
              Separator::verticalBar),
         "RAM 3.0 GB 47% | CPU 52°C"},
        {only({M::cpu, M::temperature}, Memory::percentageOnly, Temperature::labeledTemp,
              Separator::bullet),
         "CPU 14% • Temp 52°C"},
        {only({M::cpu, M::cpu}), "CPU 14%  CPU 14%"},
        {only({}), "lumetra"},
        {only({M::cpu, M::temperature, M::upload}), "CPU 14%  ↑ 0 B/s", std::nullopt},
        {only({M::temperature}), "lumetra", std::nullopt}};
    for (const Case& c : cases)
        EXPECT_EQ(labelText(sample(c.temperature), c.settings), QString::fromUtf8(c.expected));
}

TEST(ChipsTest, OneChipPerMetricWithGraphsAndLevels) {
    SystemMetrics metrics = sample();
    metrics.downloadBytesPerSecond = 1500;
    const auto row =
        chips(metrics, MetricHistories{history({0, 50, 99.9, 100}), history({47}), MetricHistory()},
              LabelSettings());
    ASSERT_EQ(row.size(), 5);
    EXPECT_EQ(row[0], (MenuBarChipContent{M::cpu, "14%", QStringLiteral("▁▄▇█"), 14.0}));
    EXPECT_EQ(row[1], (MenuBarChipContent{M::memory, "47%", QStringLiteral("▄"), 47.0}));
    EXPECT_EQ(row[2].valueText, QStringLiteral("52°C"));
    EXPECT_DOUBLE_EQ(*row[2].percentage, (52.4 - 20) / 80 * 100);
    EXPECT_EQ(row[3], (MenuBarChipContent{M::download, "1.5 KB/s", {}, std::nullopt}));
    EXPECT_EQ(row[4], (MenuBarChipContent{M::upload, "0 B/s", {}, std::nullopt}));
}

// The temperature's level turns orange at 80 °C and red at 92 °C; without one it is secondary.
TEST(ChipsTest, TemperatureChipTextAndLevel) {
    using enum LevelColor;
    const std::tuple<std::optional<double>, const char*, LevelColor> cases[] = {
        {std::nullopt, "Unavailable", secondary},
        {79.9, "80°C", accent},
        {80.0, "80°C", orange},
        {92.0, "92°C", red},
        {-40.0, "-40°C", accent}};
    for (const auto& [celsius, text, color] : cases) {
        const auto row = chips(sample(celsius), MetricHistories{kNone, kNone, MetricHistory()},
                               only({M::temperature}));
        ASSERT_EQ(row.size(), 1);
        EXPECT_EQ(row[0].valueText, QString::fromUtf8(text));
        EXPECT_EQ(levelColor(row[0].percentage), color) << text;
    }
}

// The chips in text form, in each style; at 100 % the CPU's part of the line is red.
TEST(MenuBarLabelTest, LabelLineShowsTheChipsInTextForm) {
    SystemMetrics metrics = sample();
    metrics.cpuUsage = 100;
    LabelSettings settings = only({M::cpu, M::temperature, M::download});
    for (const auto& [style, expected] :
         {std::pair{MenuBarDisplayStyle::textOnly, "CPU 100%  52°C  ↓ 0 B/s"},
          std::pair{MenuBarDisplayStyle::iconAndText, "C 100%  T 52°C  ↓ 0 B/s"},
          std::pair{MenuBarDisplayStyle::compactGraph, "C ▁▄█ 100%  T 52°C  ↓ 0 B/s"},
          std::pair{MenuBarDisplayStyle::miniBar, "C ▓▓▓▓▓ 100%  T ▓▓░░░ 52°C  ↓ 0 B/s"}}) {
        settings.style = style;
        EXPECT_EQ(labelLine(metrics, MetricHistories{history({0, 50, 100}), kNone, MetricHistory()},
                            settings),
                  QString::fromUtf8(expected));
        EXPECT_EQ(levelColor(labelPieces(metrics, MetricHistories(), settings).front().percentage),
                  LevelColor::red)
            << expected;
    }
}

} // namespace

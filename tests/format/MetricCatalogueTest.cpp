#include "format/MetricCatalogue.h"
#include "format/LevelColor.h"
#include "format/MenuBarLabel.h"
#include "format/MetricsTooltip.h"
#include "support/Cases.h"

#include <gtest/gtest.h>

#include <set>

using namespace lumetra;
using M = MenuBarMetric;

namespace {

constexpr std::uint64_t GiB = 1ull << 30;

SystemMetrics machine() {
    SystemMetrics metrics;
    metrics.cpuUsage = 14;
    metrics.cpuUsageValid = true;
    metrics.memoryUsed = 4 * GiB;
    metrics.memoryTotal = 16 * GiB;
    metrics.memoryPercentage = 25;
    metrics.memoryValid = true;
    metrics.swapUsed = 1 * GiB;
    metrics.swapTotal = 4 * GiB;
    metrics.diskReadBytesPerSecond = 1500;
    metrics.diskWriteBytesPerSecond = 2'500'000;
    return metrics;
}

LabelSettings showing(std::initializer_list<M> metrics, MenuBarDisplayStyle style,
                      MemoryDisplayFormat memory = MemoryDisplayFormat::percentageOnly) {
    LabelSettings settings;
    settings.displayedMetrics = QList<M>(metrics);
    settings.style = style;
    settings.memoryFormat = memory;
    return settings;
}

// Every metric is described once, and what identifies it is unique: a second row with the
// same key, mark or box name would make two metrics indistinguishable somewhere.
TEST(MetricCatalogueTest, EveryMetricHasOneRowWithUniqueKeysAndMarks) {
    std::set<std::string> keys, marks;
    std::set<std::string> choices;
    for (const MetricDescription& row : metricCatalogue()) {
        SCOPED_TRACE(std::string(rawValue(row.metric)));
        EXPECT_EQ(&describe(row.metric), &row);
        EXPECT_TRUE(keys.insert(std::string(rawValue(row.metric))).second);
        EXPECT_TRUE(marks.insert(QString::fromUtf16(row.mark).toStdString()).second);
        EXPECT_FALSE(metricName(row.metric).isEmpty());
        // A line or rate names a host whose row heads it.
        if (row.place == DashboardPlace::lineInCard) {
            EXPECT_EQ(describe(row.host).place, DashboardPlace::levelCard);
        }
        if (row.place == DashboardPlace::rate || row.place == DashboardPlace::diskLine) {
            EXPECT_EQ(describe(row.host).host, row.host);
        }
        choices.insert(row.choiceName);
    }
    EXPECT_EQ(keys.size(), allCases<M>().size());
    // Both network directions share one box, as do the disks' reads and writes.
    EXPECT_EQ(choices.size(), allCases<M>().size() - 2);
}

// The label pieces of swap and the disks: swap formatted like memory, "No swap" standing
// alone and without a level, nothing read (no swap lines, no disk reading yet) left out of the
// text and "Unavailable" as a chip. A used figure above the total (a racing reading) is a full
// swap, not 125 %.
TEST(MetricCatalogueTest, SwapAndDiskPiecesHaveTheirTextChipAndLevel) {
    using F = MemoryDisplayFormat;
    constexpr auto G = GiB;
    const std::optional<std::uint64_t> none;
    struct Case {
        M metric;
        F format;
        std::optional<std::uint64_t> swapUsed, swapTotal; // none: no swap lines
        const char* text;                                 // the textOnly piece; nullptr: left out
        const char* chip;                                 // the chip's value
        std::optional<double> percentage;                 // the level
        bool diskRead = true;
    };
    const Case cases[] = {
        {M::swap, F::percentageOnly, G, 4 * G, "SWP 25%", "25%", 25.0},
        {M::swap, F::usedOnly, G, 4 * G, "SWP 1.0 GB", "1.0 GB", 25.0},
        {M::swap, F::usedOverTotal, G, 4 * G, "1.0 GB / 4.0 GB", "1.0 GB / 4.0 GB", 25.0},
        {M::swap, F::both, 3 * G, 4 * G, "SWP 3.0 GB 75%", "3.0 GB 75%", 75.0},
        {M::swap, F::percentageOnly, 0, 0, "No swap", "No swap", {}},
        {M::swap, F::percentageOnly, none, none, nullptr, "Unavailable", {}},
        {M::swap, F::percentageOnly, 5 * G, 4 * G, "SWP 100%", "100%", 100.0},
        {M::diskRead, F::percentageOnly, G, G, "↓R 1.5 KB/s", "1.5 KB/s", {}},
        {M::diskWrite, F::percentageOnly, G, G, "↑W 2.5 MB/s", "2.5 MB/s", {}},
        {M::diskRead, F::percentageOnly, G, G, nullptr, "Unavailable", {}, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        SystemMetrics metrics = machine();
        metrics.swapUsed = c.swapUsed;
        metrics.swapTotal = c.swapTotal;
        if (!c.diskRead) {
            metrics.diskReadBytesPerSecond.reset();
            metrics.diskWriteBytesPerSecond.reset();
        }
        const QList<LabelPiece> text =
            labelPieces(metrics, MetricHistories(),
                        showing({c.metric}, MenuBarDisplayStyle::textOnly, c.format));
        if (c.text) {
            ASSERT_EQ(text.size(), 1);
            EXPECT_EQ(text.front().text, QString::fromUtf8(c.text));
            EXPECT_EQ(text.front().percentage, c.percentage);
        } else {
            EXPECT_TRUE(text.isEmpty());
            EXPECT_EQ(labelText(metrics, showing({c.metric}, MenuBarDisplayStyle::textOnly)),
                      QStringLiteral("lumetra"));
        }
        const QList<MenuBarChipContent> chip =
            chips(metrics, MetricHistories(),
                  showing({c.metric}, MenuBarDisplayStyle::iconAndText, c.format));
        ASSERT_EQ(chip.size(), 1);
        EXPECT_EQ(chip.front().valueText, QString::fromUtf8(c.chip));
        EXPECT_EQ(chip.front().percentage, c.percentage);
    }
}

// The tooltip's swap and disk lines, each with its own figure (the whole tooltip: the terminal
// mode's golden files).
TEST(MetricCatalogueTest, TooltipNamesSwapAndTheDisksWithTheirFigures) {
    SystemMetrics noSwap = machine();
    noSwap.swapUsed = noSwap.swapTotal = 0;
    const QStringList lines =
        (metricsTooltip(machine(), {}) + u'\n' + metricsTooltip(noSwap, {})).split(u'\n');
    for (const char* line : {"Swap 1.0 GB / 4.0 GB (25%)", "Disk read 1.5 KB/s",
                             "Disk write 2.5 MB/s", "Swap No swap"})
        EXPECT_TRUE(lines.contains(QString::fromUtf8(line))) << line;
}

// The label's width guide widens every figure the row knows how to widen, so the panel keeps
// room for the longest value of each metric.
TEST(MetricCatalogueTest, WidenedFiguresAreTheLongest) {
    SystemMetrics widest = machine();
    for (const MetricDescription& row : metricCatalogue())
        row.widen(widest);
    EXPECT_EQ(widest.cpuUsage, 100);
    EXPECT_EQ(widest.swapUsed, widest.swapTotal);
    EXPECT_GT(*widest.diskReadBytesPerSecond, 100e6);
    EXPECT_GT(*widest.diskWriteBytesPerSecond, 100e6);
    SystemMetrics unread;
    for (const MetricDescription& row : metricCatalogue())
        row.widen(unread);
    EXPECT_FALSE(unread.swapTotal) << "a figure that was not read stays unread";
    EXPECT_FALSE(unread.diskReadBytesPerSecond);
}

} // namespace

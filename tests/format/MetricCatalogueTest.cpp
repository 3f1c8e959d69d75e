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
    metrics.cpuCores = {10, 20, 95.5, 0};
    metrics.memoryUsed = 4 * GiB;
    metrics.memoryTotal = 16 * GiB;
    metrics.memoryPercentage = 25;
    metrics.memoryValid = true;
    metrics.swapUsed = 1 * GiB;
    metrics.swapTotal = 4 * GiB;
    metrics.diskReadBytesPerSecond = 1500;
    metrics.diskWriteBytesPerSecond = 2'500'000;
    metrics.diskDevices = {QStringLiteral("nvme0n1"), QStringLiteral("sda")};
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
        if (row.place == DashboardPlace::rate) {
            EXPECT_EQ(describe(row.host).host, row.host);
        }
        choices.insert(row.choiceName);
    }
    EXPECT_EQ(keys.size(), allCases<M>().size());
    // Both network directions share one box, as do the disks' reads and writes.
    EXPECT_EQ(choices.size(), allCases<M>().size() - 2);
}

struct PieceCase {
    std::string name;
    M metric;
    MemoryDisplayFormat format;
    std::optional<std::uint64_t> swapUsed;
    std::optional<std::uint64_t> swapTotal;
    const char* text;                 // the textOnly piece; nullptr: left out
    const char* chip;                 // the chip's value
    std::optional<double> percentage; // the level
};

class MetricPieceTest : public ::testing::TestWithParam<PieceCase> {};

// The new metrics' label pieces: swap formatted like memory, "No swap" standing alone and
// without a level, nothing read (no swap lines, no second disk reading) left out of the text
// and "Unavailable" as a chip.
TEST_P(MetricPieceTest, TextChipAndLevel) {
    const PieceCase& c = GetParam();
    SystemMetrics metrics = machine();
    metrics.swapUsed = c.swapUsed;
    metrics.swapTotal = c.swapTotal;
    if (c.name == "DiskNotReadYet") {
        metrics.diskReadBytesPerSecond.reset();
        metrics.diskWriteBytesPerSecond.reset();
    }
    const MetricHistories none;
    const QList<LabelPiece> text =
        labelPieces(metrics, none, showing({c.metric}, MenuBarDisplayStyle::textOnly, c.format));
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
        chips(metrics, none, showing({c.metric}, MenuBarDisplayStyle::iconAndText, c.format));
    ASSERT_EQ(chip.size(), 1);
    EXPECT_EQ(chip.front().valueText, QString::fromUtf8(c.chip));
    EXPECT_EQ(chip.front().percentage, c.percentage);
}

using F = MemoryDisplayFormat;
constexpr auto G = GiB;
INSTANTIATE_TEST_SUITE_P(
    NewMetrics, MetricPieceTest,
    ::testing::Values(
        PieceCase{"SwapPercent", M::swap, F::percentageOnly, G, 4 * G, "SWP 25%", "25%", 25.0},
        PieceCase{"SwapUsed", M::swap, F::usedOnly, G, 4 * G, "SWP 1.0 GB", "1.0 GB", 25.0},
        PieceCase{"SwapSlashStandsAlone", M::swap, F::usedOverTotal, G, 4 * G, "1.0 GB / 4.0 GB",
                  "1.0 GB / 4.0 GB", 25.0},
        PieceCase{"SwapBoth", M::swap, F::both, 3 * G, 4 * G, "SWP 3.0 GB 75%", "3.0 GB 75%", 75.0},
        PieceCase{"NoSwap", M::swap, F::percentageOnly, 0, 0, "No swap", "No swap", std::nullopt},
        PieceCase{"NoSwapLines", M::swap, F::percentageOnly, std::nullopt, std::nullopt, nullptr,
                  "Unavailable", std::nullopt},
        // A used figure above the total (a racing reading) is a full swap, not 125 %.
        PieceCase{"SwapOverfull", M::swap, F::percentageOnly, 5 * G, 4 * G, "SWP 100%", "100%",
                  100.0},
        PieceCase{"DiskRead", M::diskRead, F::percentageOnly, G, G, "↓R 1.5 KB/s", "1.5 KB/s",
                  std::nullopt},
        PieceCase{"DiskWrite", M::diskWrite, F::percentageOnly, G, G, "↑W 2.5 MB/s", "2.5 MB/s",
                  std::nullopt},
        PieceCase{"DiskNotReadYet", M::diskRead, F::percentageOnly, G, G, nullptr, "Unavailable",
                  std::nullopt}),
    lumetra::testing::byName);

// Records what the catalogue writes, as the JSON line would.
class RecordingWriter final : public FigureWriter {
public:
    void number(const char* key, std::optional<double> value) override {
        add(key, value ? QString::number(*value, 'g', 12) : QStringLiteral("null"));
    }
    void count(const char* key, std::optional<std::uint64_t> value) override {
        add(key, value ? QString::number(*value) : QStringLiteral("null"));
    }
    void word(const char* key, std::string_view value) override {
        add(key, QString::fromUtf8(value.data(), qsizetype(value.size())));
    }
    void names(const char* key, const QStringList& values) override {
        add(key, u'[' + values.join(u',') + u']');
    }
    void numbers(const char* key, std::span<const double> values) override {
        QStringList texts;
        for (double value : values)
            texts << QString::number(value);
        add(key, u'[' + texts.join(u',') + u']');
    }

    QStringList keys;
    QMap<QString, QString> values;

private:
    void add(const char* key, const QString& value) {
        keys << QString::fromLatin1(key);
        values.insert(QString::fromLatin1(key), value);
    }
};

// The new figures under their own names; a figure that was not read is null, and swap is
// null with the rest of the memory reading when that failed.
TEST(MetricCatalogueTest, FiguresKeepTheirNamesAndAreNullWhenUnread) {
    RecordingWriter read;
    writeFigures(read, machine());
    EXPECT_EQ(read.values["cpuCores"], "[10,20,95.5,0]");
    EXPECT_EQ(read.values["swapUsed"], QString::number(GiB));
    EXPECT_EQ(read.values["swapTotal"], QString::number(4 * GiB));
    EXPECT_EQ(read.values["diskReadRate"], "1500");
    EXPECT_EQ(read.values["diskWriteRate"], "2500000");
    EXPECT_EQ(read.values["diskDevices"], "[nvme0n1,sda]");
    EXPECT_EQ(read.keys.removeDuplicates(), 0) << "every key once";
    EXPECT_LT(read.keys.indexOf("cpuUsage"), read.keys.indexOf("memoryUsed"));

    SystemMetrics unread = machine();
    unread.memoryValid = false;
    unread.cpuUsageValid = false;
    unread.cpuCores.clear();
    unread.diskReadBytesPerSecond.reset();
    unread.diskWriteBytesPerSecond.reset();
    unread.diskDevices.clear();
    RecordingWriter failed;
    writeFigures(failed, unread);
    for (const char* key :
         {"cpuUsage", "memoryUsed", "swapUsed", "swapTotal", "diskReadRate", "diskWriteRate"})
        EXPECT_EQ(failed.values[key], "null") << key;
    EXPECT_EQ(failed.values["cpuCores"], "[]");
    EXPECT_EQ(failed.values["diskDevices"], "[]");
}

// The tooltip has one line per metric and names the new ones with their figures.
TEST(MetricCatalogueTest, TooltipListsTheNewMetrics) {
    const QStringList lines = metricsTooltip(machine(), {}).split(u'\n');
    EXPECT_TRUE(lines.contains(QStringLiteral("Swap 1.0 GB / 4.0 GB (25%)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Disk read 1.5 KB/s")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Disk write 2.5 MB/s")));
    SystemMetrics noSwap = machine();
    noSwap.swapUsed = 0;
    noSwap.swapTotal = 0;
    EXPECT_TRUE(metricsTooltip(noSwap, {}).split(u'\n').contains(QStringLiteral("Swap No swap")));
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

#include "menubar/MenuBarLabelView.h"
#include "core/SystemMonitor.h"
#include "format/MenuBarLabel.h"
#include "menubar/LabelFont.h"
#include "menubar/MenuBarRichLabel.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"
#include "support/Cases.h"

#include <QDir>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace lumetra {
// Readable runs in failure messages.
void PrintTo(const LabelRun& run, std::ostream* out) {
    *out << '{' << run.text.toStdString() << ", " << (run.color ? caseName(*run.color) : "text")
         << '}';
}
} // namespace lumetra

using namespace lumetra;
using M = MenuBarMetric;
using S = MenuBarDisplayStyle;

namespace {

const MetricHistory kNoHistory;

SystemMetrics sample(double cpu) {
    SystemMetrics metrics;
    metrics.cpuUsage = cpu;
    metrics.memoryUsed = 6ull << 30;
    metrics.memoryTotal = 16ull << 30;
    metrics.memoryPercentage = 82;
    metrics.temperature = 52.4;
    metrics.downloadBytesPerSecond = 1500;
    return metrics;
}

MetricHistory history(std::initializer_list<double> values) {
    MetricHistory result;
    for (double value : values)
        result.append(value);
    return result;
}

const QList<M> kAllMetrics{M::cpu, M::memory, M::temperature, M::download, M::upload};

LabelSettings settingsFor(S style, const QList<M>& metrics = kAllMetrics) {
    LabelSettings settings{metrics};
    settings.style = style;
    return settings;
}

struct RunsCase {
    std::string name;
    MenuBarChipContent chip;
    S style;
    QList<LabelRun> expected;
};

class RichLabelRunsTest : public ::testing::TestWithParam<RunsCase> {};

TEST_P(RichLabelRunsTest, MarkThenGraphOrBarThenValue) {
    EXPECT_EQ(richLabelRuns({GetParam().chip}, GetParam().style, MenuBarSeparator::space),
              GetParam().expected);
}

constexpr auto kAccent = LevelColor::accent, kOrange = LevelColor::orange, kRed = LevelColor::red,
               kSecondary = LevelColor::secondary;
const std::optional<LevelColor> kText;
const MenuBarChipContent kCpu{M::cpu, "14%", "▁▄▇", 14};

INSTANTIATE_TEST_SUITE_P(
    Styles, RichLabelRunsTest,
    ::testing::Values(
        RunsCase{"IconAndTextHasNoGraph", kCpu, S::iconAndText, {{"C", kAccent}, {" 14%", kText}}},
        RunsCase{"CompactGraphInLevelColour",
                 kCpu,
                 S::compactGraph,
                 {{"C", kAccent}, {" ", kText}, {"▁▄▇", kAccent}, {" 14%", kText}}},
        RunsCase{"FullCpuBarIsRed",
                 {M::cpu, "100%", "█", 100},
                 S::miniBar,
                 {{"C", kRed}, {" ", kText}, {"▓▓▓▓▓", kRed}, {" 100%", kText}}},
        RunsCase{"MemoryAt80IsOrange",
                 {M::memory, "80%", "▅", 80},
                 S::miniBar,
                 {{"M", kOrange}, {" ", kText}, {"▓▓▓▓░", kOrange}, {" 80%", kText}}},
        RunsCase{"NetworkGraphStyleShowsNoGraph",
                 {M::download, "1.5 KB/s", {}, std::nullopt},
                 S::compactGraph,
                 {{"↓", kSecondary}, {" 1.5 KB/s", kText}}},
        RunsCase{"NoPercentageNoBar",
                 {M::temperature, "Unavailable", {}, std::nullopt},
                 S::miniBar,
                 {{"T", kSecondary}, {" Unavailable", kText}}},
        RunsCase{"TemperatureHasBarButNoGraph",
                 {M::temperature, "52°C", {}, 40},
                 S::miniBar,
                 {{"T", kAccent}, {" ", kText}, {"▓▓░░░", kAccent}, {" 52°C", kText}}},
        RunsCase{"GraphWithoutPercentageKeepsTextColour",
                 {M::cpu, "5%", "▁▂", std::nullopt},
                 S::compactGraph,
                 {{"C", kSecondary}, {" ▁▂ 5%", kText}}}),
    lumetra::testing::byName);

// The painted row must read exactly like the text form of the chips the panels show.
TEST(RichLabelRunsTest, RowReadsLikeTheChipTexts) {
    const QList<MenuBarChipContent> row =
        chips(sample(14), history({10, 60}), history({82}), settingsFor(S::iconAndText));
    for (S style : {S::iconAndText, S::compactGraph, S::miniBar}) {
        QString joined, expected;
        for (const LabelRun& run : richLabelRuns(row, style, MenuBarSeparator::bullet))
            joined += run.text;
        for (const MenuBarChipContent& chip : row)
            expected +=
                (expected.isEmpty() ? QString() : QStringLiteral(" • ")) + chipText(chip, style);
        EXPECT_EQ(joined, expected) << rawValue(style);
    }
    EXPECT_TRUE(richLabelRuns({}, S::miniBar, MenuBarSeparator::dot).isEmpty());
}

TEST(RunColorTest, LevelsMapToPaletteAndFixedColours) {
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::blue);
    palette.setColor(QPalette::PlaceholderText, Qt::gray);
    palette.setColor(QPalette::WindowText, Qt::black);
    EXPECT_EQ(runColor(LevelColor::accent, palette), QColor(Qt::blue));
    EXPECT_EQ(runColor(LevelColor::secondary, palette), QColor(Qt::gray));
    EXPECT_EQ(runColor(std::nullopt, palette), QColor(Qt::black));
    EXPECT_EQ(runColor(LevelColor::orange, palette), QColor("#FF9500"));
    EXPECT_EQ(runColor(LevelColor::red, palette), QColor("#FF3B30"));
}

TEST(MenuBarLabelViewTest, SwitchesBetweenTextAndChipsWithTheStyle) {
    MenuBarLabelView view;
    const SystemMetrics metrics = sample(14);
    view.setContent(metrics, kNoHistory, kNoHistory, settingsFor(S::textOnly));
    EXPECT_FALSE(view.showsChips());
    EXPECT_EQ(view.text(), labelText(metrics, settingsFor(S::textOnly)));

    view.setContent(metrics, kNoHistory, kNoHistory, settingsFor(S::miniBar, {M::cpu}));
    EXPECT_TRUE(view.showsChips());
    EXPECT_EQ(view.richLabel().runs().size(), 4);

    view.setContent(metrics, kNoHistory, kNoHistory, settingsFor(S::textOnly, {M::cpu}));
    EXPECT_FALSE(view.showsChips());
    EXPECT_EQ(view.text(), QStringLiteral("CPU 14%"));
}

TEST(MenuBarLabelViewTest, LabelFontHasTabularDigits) {
    EXPECT_TRUE(hasTabularDigits(labelFont()));
}

// Equal digit counts give equal widths, so the label does not jitter each second.
TEST(MenuBarLabelViewTest, WidthStaysWhenTheDigitsChange) {
    for (S style : {S::textOnly, S::iconAndText, S::compactGraph, S::miniBar}) {
        MenuBarLabelView view;
        view.setContent(sample(10), history({10}), history({82}), settingsFor(style));
        const int width = view.sizeHint().width();
        view.setContent(sample(88), history({88}), history({82}), settingsFor(style));
        EXPECT_EQ(view.sizeHint().width(), width) << rawValue(style);
        EXPECT_GT(width, 100) << rawValue(style);
    }
}

// Counts the paint events a widget receives.
class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

TEST(MenuBarLabelViewTest, EqualContentRequestsNoRepaint) {
    MenuBarLabelView view;
    PaintCounter counter;
    const_cast<MenuBarRichLabel&>(view.richLabel()).installEventFilter(&counter);
    QSignalSpy changed(&view, &MenuBarLabelView::contentChanged);
    view.setContent(sample(14), history({14}), kNoHistory, settingsFor(S::compactGraph));
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    QCoreApplication::processEvents();
    const int paints = counter.paints;
    ASSERT_GT(paints, 0);
    ASSERT_EQ(changed.size(), 1);

    view.setContent(sample(14), history({14}), kNoHistory, settingsFor(S::compactGraph));
    QCoreApplication::processEvents();
    EXPECT_EQ(counter.paints, paints);
    EXPECT_EQ(changed.size(), 1);

    view.setContent(sample(15), history({14}), kNoHistory, settingsFor(S::compactGraph));
    QCoreApplication::processEvents();
    EXPECT_GT(counter.paints, paints);
    EXPECT_EQ(changed.size(), 2);
}

TEST(MenuBarLabelViewTest, BoundViewCoalescesABurstIntoOneRebuild) {
    UserDefaults defaults(QString{});
    SettingsStore store(defaults);
    SystemMonitor monitor({}, 1, 1);
    MenuBarLabelView view;
    view.bind(&monitor, &store);
    EXPECT_FALSE(view.showsChips());

    QSignalSpy changed(&view, &MenuBarLabelView::contentChanged);
    monitor.applyFastSample(MemorySnapshot{4ull << 30, 16ull << 30}, MemoryPressureLevel::normal,
                            NetworkRates{2000, 0}, 37);
    store.setMenuBarDisplayStyle(S::miniBar);
    store.setSeparator(MenuBarSeparator::dot);
    EXPECT_EQ(changed.size(), 0); // nothing until the queued rebuild runs
    QCoreApplication::processEvents();
    EXPECT_EQ(changed.size(), 1);
    EXPECT_TRUE(view.showsChips());
    EXPECT_EQ(view.richLabel().runs().front(), (LabelRun{"C", LevelColor::accent}));
}

// Renders the label in a few settings when LUMETRA_LABEL_SNAPSHOTS names a folder, to look at.
TEST(MenuBarLabelViewTest, Snapshots) {
    const QString folder = qEnvironmentVariable("LUMETRA_LABEL_SNAPSHOTS");
    if (folder.isEmpty())
        GTEST_SKIP() << "set LUMETRA_LABEL_SNAPSHOTS to a folder to write the images";
    QDir().mkpath(folder);
    const MetricHistory cpu = history({5, 20, 35, 50, 65, 80, 99});
    for (S style : {S::textOnly, S::iconAndText, S::compactGraph, S::miniBar}) {
        for (double load : {14.0, 95.0}) {
            MenuBarLabelView view;
            LabelSettings settings = settingsFor(style);
            settings.separator = load > 50 ? MenuBarSeparator::bullet : MenuBarSeparator::space;
            view.setContent(sample(load), cpu, history({82}), settings);
            view.resize(view.sizeHint());
            const QString name = QStringLiteral("%1/label-%2-%3.png")
                                     .arg(folder, QString::fromUtf8(rawValue(style)))
                                     .arg(int(load));
            EXPECT_TRUE(view.grab().save(name)) << name.toStdString();
        }
    }
}

} // namespace

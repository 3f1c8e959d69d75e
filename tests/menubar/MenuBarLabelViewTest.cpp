#include "menubar/MenuBarLabelView.h"
#include "core/SystemMonitor.h"
#include "format/MenuBarLabel.h"
#include "menubar/LabelFont.h"
#include "menubar/MenuBarRichLabel.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"
#include "support/Cases.h"

#include <QPalette>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumetra;
using M = MenuBarMetric;
using S = MenuBarDisplayStyle;

namespace {

using lumetra::testing::history;

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

const QList<M> kAllMetrics{M::cpu, M::memory, M::temperature, M::download, M::upload};

LabelSettings settingsFor(S style, const QList<M>& metrics = kAllMetrics) {
    LabelSettings settings{metrics};
    settings.style = style;
    return settings;
}

// Histories with a CPU and a memory graph.
MetricHistories histories(MetricHistory cpu = MetricHistory(),
                          MetricHistory memory = MetricHistory()) {
    return {std::move(cpu), std::move(memory), MetricHistory()};
}

// Runs as "text/colour" joined by "|".
std::string rendered(const QList<LabelRun>& runs) {
    std::string out;
    for (const LabelRun& run : runs)
        out += (out.empty() ? "" : "|") + run.text.toStdString() + '/' +
               std::string(run.color ? caseName(*run.color) : "text");
    return out;
}

// Mark, then graph or bar, then value; the mark and graph or bar in the level's colour.
TEST(RichLabelRunsTest, MarkThenGraphOrBarThenValue) {
    struct Case {
        MenuBarChipContent chip;
        S style;
        const char* expected;
    };
    const MenuBarChipContent cpu{M::cpu, "14%", "▁▄▇", 14};
    for (const Case& c : std::initializer_list<Case>{
             {cpu, S::iconAndText, "C/accent| 14%/text"},
             {cpu, S::compactGraph, "C/accent| /text|▁▄▇/accent| 14%/text"},
             {{M::cpu, "100%", "█", 100}, S::miniBar, "C/red| /text|▓▓▓▓▓/red| 100%/text"},
             {{M::memory, "80%", "▅", 80}, S::miniBar, "M/orange| /text|▓▓▓▓░/orange| 80%/text"},
             {{M::download, "1.5 KB/s", {}, {}}, S::compactGraph, "↓/secondary| 1.5 KB/s/text"},
             {{M::temperature, "Unavailable", {}, {}}, S::miniBar, "T/secondary| Unavailable/text"},
             {{M::temperature, "52°C", {}, 40},
              S::miniBar,
              "T/accent| /text|▓▓░░░/accent| 52°C/text"},
             {{M::cpu, "5%", "▁▂", {}}, S::compactGraph, "C/secondary| ▁▂ 5%/text"}})
        EXPECT_EQ(rendered(richLabelRuns({c.chip}, c.style, MenuBarSeparator::space)), c.expected);
}

// The painted row must read exactly like the text form of the chips the panels show.
TEST(RichLabelRunsTest, RowReadsLikeTheChipTexts) {
    const QList<MenuBarChipContent> row =
        chips(sample(14), histories(history({10, 60}), history({82})), settingsFor(S::iconAndText));
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

TEST(MenuBarLabelViewTest, SwitchesBetweenTextAndChipsWithTheStyle) {
    MenuBarLabelView view;
    const SystemMetrics metrics = sample(14);
    view.setContent(metrics, histories(), settingsFor(S::textOnly));
    EXPECT_FALSE(view.showsChips());
    EXPECT_EQ(view.text(), labelText(metrics, settingsFor(S::textOnly)));

    view.setContent(metrics, histories(), settingsFor(S::miniBar, {M::cpu}));
    EXPECT_TRUE(view.showsChips());
    EXPECT_EQ(view.richLabel().runs().size(), 4);

    view.setContent(metrics, histories(), settingsFor(S::textOnly, {M::cpu}));
    EXPECT_FALSE(view.showsChips());
    EXPECT_EQ(view.text(), QStringLiteral("CPU 14%"));
}

// Tabular digits: equal digit counts give equal widths, so the label does not jitter.
TEST(MenuBarLabelViewTest, WidthStaysWhenTheDigitsChange) {
    EXPECT_TRUE(hasTabularDigits(labelFont()));
    for (S style : {S::textOnly, S::iconAndText, S::compactGraph, S::miniBar}) {
        MenuBarLabelView view;
        view.setContent(sample(10), histories(history({10}), history({82})), settingsFor(style));
        const int width = view.sizeHint().width();
        view.setContent(sample(88), histories(history({88}), history({82})), settingsFor(style));
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
    const auto show = [&](double cpu) {
        view.setContent(sample(cpu), histories(history({14})), settingsFor(S::compactGraph));
        QCoreApplication::processEvents();
    };
    view.show();
    show(14);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    QCoreApplication::processEvents();
    const int paints = counter.paints;
    ASSERT_GT(paints, 0);
    show(14);
    EXPECT_EQ(counter.paints, paints);
    EXPECT_EQ(changed.size(), 1);
    show(15);
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
    monitor.applyFastSample({CPUUsage{37, {}}, MemorySnapshot{4ull << 30, 16ull << 30},
                             MemoryPressureLevel::normal, NetworkRates{2000, 0}});
    store.setMenuBarDisplayStyle(S::miniBar);
    store.setSeparator(MenuBarSeparator::dot);
    EXPECT_EQ(changed.size(), 0); // nothing until the queued rebuild runs
    QCoreApplication::processEvents();
    EXPECT_EQ(changed.size(), 1);
    EXPECT_TRUE(view.showsChips());
    EXPECT_EQ(view.richLabel().runs().front(), (LabelRun{"C", LevelColor::accent}));
}

} // namespace

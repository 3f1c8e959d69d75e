#include "dashboard/DashboardView.h"
#include "core/SystemMonitor.h"
#include "dashboard/AreaSparkline.h"
#include "dashboard/FooterButton.h"
#include "settings/SettingsTestSupport.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <set>

using namespace lumetra;

namespace {

DashboardState sampleState(int volumes) {
    DashboardState state;
    state.metrics.cpuUsage = 30;
    state.metrics.memoryPercentage = 50;
    state.metrics.temperature = 61;
    state.metrics.temperatureAvailability = TemperatureAvailability::exactTemperature;
    state.metrics.temperatureSources = {QStringLiteral("k10temp/Tccd1"),
                                        QStringLiteral("k10temp/Tccd2")};
    state.metrics.networkInterfaces = {QStringLiteral("enp5s0")};
    for (int i = 0; i < 3; ++i) {
        state.histories.cpu.append(10.0 * i);
        state.histories.memory.append(50);
    }
    for (int i = 0; i < volumes; ++i) {
        DiskVolume volume;
        volume.name = QStringLiteral("disk%1").arg(i);
        volume.totalCapacity = 1000;
        volume.availableCapacity = 400;
        state.diskVolumes.push_back(volume);
    }
    return state;
}

struct Fixture {
    lumetra::testing::LoadedStore settings;
    SystemMonitor monitor{{}, 1, 1};
    DashboardView view{monitor, settings.store};

    explicit Fixture(int volumes = 1) {
        view.setFixedLook(QStringLiteral("DejaVu Sans"));
        view.setFixedState(sampleState(volumes));
        view.resize(view.sizeHint());
    }

    // Every tooltip the view offers, probing it on a 4-pixel grid.
    std::set<QString> toolTips() const {
        std::set<QString> texts;
        for (int y = 0; y < view.sizeHint().height(); y += 4)
            for (int x = 0; x < DashboardView::kWidth; x += 4)
                texts.insert(view.toolTipAt(QPointF(x, y)));
        return texts;
    }
};

// Every style keeps the width, names where figures come from and keeps the footer inside;
// switching the style changes the height at once, without a new view. What each footer button
// requests is checked through the popover that hosts the view.
TEST(DashboardViewTest, EveryStyleKeepsItsWidthAndNamesWhereFiguresComeFrom) {
    Fixture fixture;
    std::set<int> heights;
    for (MetricCardStyle style : allCases<MetricCardStyle>()) {
        SCOPED_TRACE(rawValue(style));
        fixture.settings.store.setMetricCardStyle(style);
        heights.insert(fixture.view.sizeHint().height());
        EXPECT_EQ(fixture.view.sizeHint().width(), DashboardView::kWidth);
        const std::set<QString> texts = fixture.toolTips();
        EXPECT_TRUE(texts.count(QString::fromUtf8("k10temp · Tccd1, Tccd2")));
        EXPECT_TRUE(texts.count(QStringLiteral("Counted: enp5s0")));
        // The header and the glance strip have none.
        EXPECT_EQ(fixture.view.toolTipAt(QPointF(20, 15)), QString());
        const QList<FooterButton*> buttons = fixture.view.findChildren<FooterButton*>();
        EXPECT_EQ(buttons.size(), 3);
        for (FooterButton* button : buttons)
            EXPECT_TRUE(QRect(QPoint(), fixture.view.sizeHint()).contains(button->geometry()))
                << button->toolTip().toStdString();
    }
    EXPECT_EQ(heights.size(), 5u);
}

TEST(DashboardViewTest, HeightFollowsTheVolumes) {
    Fixture none(0);
    Fixture one(1);
    Fixture three(3);
    EXPECT_LT(none.view.sizeHint().height(), one.view.sizeHint().height());
    // Each further row adds the same height (to the pixel the total is rounded up to).
    const int two = Fixture(2).view.sizeHint().height();
    EXPECT_NEAR(three.view.sizeHint().height() - one.view.sizeHint().height(),
                2 * (three.view.sizeHint().height() - two), 1);
}

// Without a fixed state the view follows the monitor: each new sample, each new volume list.
// A closed popover skips the layout work of each sample, but opens with what it missed: the
// popover asks for the height before it opens, so that must already be the new one.
TEST(DashboardViewTest, FollowsTheMonitorShownOrHidden) {
    for (const bool hiddenMeanwhile : {false, true}) {
        SCOPED_TRACE(hiddenMeanwhile ? "hidden meanwhile" : "shown");
        lumetra::testing::LoadedStore settings;
        SystemMonitor monitor({}, 1, 1);
        DashboardView view(monitor, settings.store);
        auto* strip = view.findChild<QWidget*>(QStringLiteral("DashboardGlanceStrip"));
        ASSERT_NE(strip, nullptr);
        monitor.applyFastSample(
            {CPUUsage{12, {}}, MemorySnapshot{4, 16}, MemoryPressureLevel::normal, NetworkRates{}});
        EXPECT_EQ(strip->accessibleName(), QStringLiteral("CPU 12%, memory 25%"));
        if (hiddenMeanwhile) {
            view.show();
            view.hide();
        }
        QSignalSpy heightChanged(&view, &DashboardView::preferredHeightChanged);
        const int before = view.sizeHint().height();

        monitor.applyFastSample(
            {CPUUsage{40, {}}, MemorySnapshot{8, 16}, MemoryPressureLevel::normal, NetworkRates{}});
        DiskVolume disk;
        disk.name = QStringLiteral("Data");
        monitor.applyDiskVolumes({disk});
        EXPECT_GT(view.sizeHint().height(), before);
        if (hiddenMeanwhile)
            view.show();
        else
            EXPECT_EQ(heightChanged.count(), 1);
        EXPECT_EQ(strip->accessibleName(), QStringLiteral("CPU 40%, memory 50%"));
    }
}

TEST(AreaSparklineTest, OutlineFollowsTheValuesAndClosesAlongTheBottom) {
    const QRectF canvas(0, 0, 100, 34);
    const std::vector<double> none;
    const std::vector<double> one{50};
    EXPECT_TRUE(AreaSparkline(none, 0, 100, Qt::red).path(canvas).isEmpty());
    EXPECT_TRUE(AreaSparkline(one, 0, 100, Qt::red).path(canvas).isEmpty());

    // Two equal values: a flat band at their height over the whole width.
    const std::vector<double> flat{50, 50};
    const QPainterPath band = AreaSparkline(flat, 0, 100, Qt::red).path(canvas);
    EXPECT_EQ(band.boundingRect(), QRectF(0, 17, 100, 17));

    // A range of no span is taken as 0.0001 wide, never divided by 0.
    const std::vector<double> values{0, 0.00005};
    const QPainterPath thin = AreaSparkline(values, 0, 0, Qt::red).path(canvas);
    EXPECT_NEAR(thin.elementAt(1).y, 17, 1e-6);

    // Three values: points at x = 0, 50, 100; above the range runs off the top.
    const std::vector<double> rising{0, 50, 200};
    const QPainterPath path = AreaSparkline(rising, 0, 100, Qt::red).path(canvas);
    EXPECT_EQ(QPointF(path.elementAt(0)), QPointF(0, 34));
    EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(50, 17));
    EXPECT_EQ(QPointF(path.elementAt(2)), QPointF(100, -34));
}

} // namespace

#include "menubar/StatusItemController.h"
#include "core/SystemMonitor.h"
#include "desktop/DBusMenu.h"
#include "desktop/DBusSignalRecorder.h"
#include "desktop/FakeStatusNotifierWatcher.h"
#include "desktop/PrivateSessionBus.h"
#include "desktop/StatusNotifierItem.h"
#include "desktop/StatusNotifierState.h"
#include "menubar/LabelImage.h"
#include "menubar/LiveIcon.h"
#include "menubar/StatusNotifierItemDriver.h"
#include "model/Logging.h"
#include "settings/SettingsTestSupport.h"
#include "support/LogCapture.h"

#include <QDBusMessage>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>

#include <gtest/gtest.h>

namespace lumetra {
namespace {

using testing::PrivateSessionBus;
using testing::waitFor;

// ---- where a click was ---------------------------------------------------------------

// A position inside the item's largest picture is taken for one relative to the icon (waybar
// 0.9 sends those); anything beyond it, or negative, is on the screen.
TEST(ClickPosition, InsideTheIconsOwnBoxIsRelativeToIt) {
    const StatusNotifierIconPixmaps wideLabel{{22, 22, {}}, {60, 24, {}}};
    struct Case {
        QPoint position;
        bool relative;
    };
    for (const Case& c :
         {Case{{30, 15}, true}, Case{{59, 23}, true}, Case{{0, 0}, true}, Case{{60, 15}, false},
          Case{{30, 24}, false}, Case{{1240, 15}, false}, Case{{-3, 5}, false}})
        EXPECT_EQ(StatusItemController::isIconRelative(c.position, wideLabel), c.relative)
            << c.position.x() << "," << c.position.y();
    EXPECT_FALSE(StatusItemController::isIconRelative({5, 5}, {})) << "no picture, no box";
}

// ---- which image the panel gets ------------------------------------------------------

using Shape = StatusItemController::IconShape;

// The last override is unknown and ignored.
TEST(IconShapeChoice, FollowsTheDesktopAndTheOverride) {
    using C = std::tuple<QString, QString, Shape>;
    for (const auto& [desktop, override, shape] :
         {C{"ubuntu:GNOME", "", Shape::symbolic}, C{"Unity", "", Shape::symbolic},
          C{"XFCE", "", Shape::square}, C{"XFCE", "Symbolic", Shape::symbolic},
          C{"sway", "", Shape::wide}, C{"river:wlroots", "", Shape::wide},
          C{"KDE", "wide", Shape::wide}, C{"sway", "SQUARE", Shape::square},
          C{"sway", "round", Shape::wide}})
        EXPECT_EQ(StatusItemController::iconShapeFor(desktop, override), shape)
            << desktop.toStdString() << " " << override.toStdString();
}

// ---- the label guide -----------------------------------------------------------------

LabelSettings settingsWith(QList<MenuBarMetric> metrics, MenuBarDisplayStyle style,
                           MemoryDisplayFormat memory = MemoryDisplayFormat::percentageOnly,
                           MenuBarSeparator separator = MenuBarSeparator::space) {
    return {.displayedMetrics = std::move(metrics),
            .separator = separator,
            .memoryFormat = memory,
            .style = style};
}

using M = MenuBarMetric;
using S = MenuBarDisplayStyle;
const QList<M> kAll{M::cpu, M::memory, M::temperature, M::download, M::upload};

TEST(LabelGuide, IsTheWidestLabel) {
    struct Case {
        LabelSettings settings;
        bool temperature;
        const char* guide;
    };
    const Case cases[] = {
        {settingsWith(kAll, S::textOnly), true,
         "CPU 888%  RAM 888%  888°C  ↓ 888 MB/s  ↑ 888 MB/s"},
        {settingsWith(kAll, S::textOnly), false, "CPU 888%  RAM 888%  ↓ 888 MB/s  ↑ 888 MB/s"},
        {settingsWith({M::memory, M::cpu}, S::textOnly, MemoryDisplayFormat::usedOnly,
                      MenuBarSeparator::dot),
         true, "RAM 88.8 GB · CPU 888%"},
        {settingsWith({M::cpu, M::download}, S::compactGraph), true, "C ███████ 888%  ↓ 888 MB/s"},
        {settingsWith({M::temperature}, S::miniBar), false, "T Unavailable"},
        {settingsWith({}, S::textOnly), true, "lumetra"},
    };
    for (const Case& c : cases) {
        SystemMetrics current;
        current.cpuUsage = 3;
        current.memoryPercentage = 12;
        current.memoryUsed = 2ull << 30;
        current.memoryTotal = 16ull << 30;
        if (c.temperature)
            current.temperature = 41.6;
        current.downloadBytesPerSecond = 512;
        EXPECT_EQ(StatusItemController::labelGuide(c.settings, current).toStdString(), c.guide);
    }
}

// ---- the square live icon ------------------------------------------------------------

MenuBarChipContent chip(MenuBarMetric metric, std::optional<double> percentage) {
    return {metric, QStringLiteral("x"), {}, percentage};
}

TEST(LiveIconLevels, AreTheFirstTwoWithAScale) {
    const std::pair<QList<MenuBarChipContent>, QList<std::optional<double>>> cases[] = {
        {{chip(M::cpu, 40), chip(M::memory, 60)}, {40.0, 60.0}},
        // Rates have no scale and are skipped.
        {{chip(M::download, {}), chip(M::temperature, 90), chip(M::upload, {}), chip(M::cpu, 5),
          chip(M::memory, 7)},
         {90.0, 5.0}},
        {{chip(M::temperature, {}), chip(M::memory, 7)}, {std::nullopt, 7.0}},
        {{chip(M::upload, {}), chip(M::memory, 30)}, {30.0}},
        // Only rates: the CPU and memory figures given.
        {{chip(M::download, {}), chip(M::upload, {})}, {11.0, 22.0}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LiveIcon::levels(c.first, 11, 22), c.second) << "case " << &c - cases;
}

TEST(LiveIconPixels, FillBarsFromTheBottomInTheLevelColour) {
    struct Case {
        int size;
        QList<std::optional<double>> levels;
        QPoint pixel;
        QColor color; // invalid: not a level colour
    };
    const QColor red = LiveIcon::color(LevelColor::red);
    const QColor accent = LiveIcon::color(LevelColor::accent);
    const Case cases[] = {
        // At 16 px: bars 6 wide at x 1..6 and 9..14, the track inside from y 2 to 13.
        {16, {100.0, 10.0}, {3, 2}, red},               // full CPU, at the top
        {16, {100.0, 10.0}, {11, 13}, accent},          // low memory, at the bottom
        {16, {100.0, 10.0}, {11, 4}, QColor()},         // but not at the top
        {22, {80.0, 0.0}, {16, 19}, QColor()},          // zero is empty
        {24, {0.5, 0.0}, {5, 21}, accent},              // a tiny load shows a pixel
        {24, {50.0, 50.0}, {0, 0}, QColor(0, 0, 0, 0)}, // transparent corner
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        const QImage image = LiveIcon::render(c.size, c.levels);
        ASSERT_EQ(image.size(), QSize(c.size, c.size));
        const QColor pixel = image.pixelColor(c.pixel);
        if (c.color.isValid())
            EXPECT_EQ(pixel.name(QColor::HexArgb).toStdString(),
                      c.color.name(QColor::HexArgb).toStdString());
        else
            for (LevelColor level :
                 {LevelColor::accent, LevelColor::orange, LevelColor::red, LevelColor::secondary})
                EXPECT_NE(pixel, LiveIcon::color(level));
    }
}

// ---- the wide label image -------------------------------------------------------------

TEST(LabelImagePieces, ChipRowHasTintedIconsAndColouredBars) {
    const QList<MenuBarChipContent> chips{{M::cpu, QStringLiteral("95%"), {}, 95.0},
                                          {M::download, QStringLiteral("1.0 KB/s"), {}, {}}};
    const QList<LabelImagePiece> pieces =
        LabelImage::pieces(chips, S::miniBar, MenuBarSeparator::verticalBar);
    using K = LabelImagePiece::Kind;
    const QList<LabelImagePiece> expected{
        {K::icon, M::cpu, {}, LevelColor::red},
        {K::text, M::cpu, QStringLiteral(" "), std::nullopt},
        {K::text, M::cpu, QStringLiteral("▓▓▓▓▓"), LevelColor::red},
        {K::text, M::cpu, QStringLiteral(" 95% | "), std::nullopt},
        {K::icon, M::download, {}, LevelColor::secondary},
        {K::text, M::cpu, QStringLiteral(" 1.0 KB/s"), std::nullopt},
    };
    EXPECT_EQ(pieces, expected);
}

TEST(LabelImageRender, IsAsHighAsAskedAndAsWideAsTheText) {
    QFont font;
    const QImage short_ =
        LabelImage::render(LabelImage::textPieces(QStringLiteral("CPU 5%")), 24, font, Qt::white);
    const QImage long_ = LabelImage::render(
        LabelImage::textPieces(QStringLiteral("CPU 5%  RAM 40%  ↓ 12 KB/s")), 24, font, Qt::white);
    EXPECT_EQ(short_.height(), 24);
    EXPECT_EQ(long_.height(), 24);
    EXPECT_GT(short_.width(), 24);
    EXPECT_GT(long_.width(), short_.width() * 3);
}

TEST(StatusItemIconPixmap, UnpremultipliesIntoNetworkOrder) {
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixel(0, 0, qRgba(0x80, 0, 0, 0x80)); // premultiplied: half-transparent pure red
    image.setPixel(1, 0, qRgba(0x11, 0x22, 0x33, 0xFF));
    const StatusNotifierIconPixmap pixmap = StatusItemController::iconPixmap(image);
    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 1);
    EXPECT_EQ(pixmap.data.toHex(' ').toStdString(), "80 ff 00 00 ff 11 22 33");
}

// ---- the controller over a private bus -----------------------------------------------

class StatusItemControllerBus : public ::testing::Test {
protected:
    void SetUp() override {
        if (!bus.available())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
        store.store.setMenuBarDisplayStyle(MenuBarDisplayStyle::textOnly);
        controller = make(Shape::square);
        recorder = std::make_unique<testing::DBusSignalRecorder>(bus.connect());
    }

    std::unique_ptr<StatusItemController> make(Shape shape, bool trayFallback = false) {
        StatusItemController::Options options;
        options.bus = bus.connect();
        options.iconShape = shape;
        options.trayFallback = trayFallback;
        options.fallbackDelayMs = 20;
        options.firstRetryDelayMs = 20;
        options.maxRetryDelayMs = 40;
        return std::make_unique<StatusItemController>(monitor, store.store, options);
    }

    QStringList drained() { return recorder->drained(*controller->item()); }

    void sample(double cpu, std::uint64_t used) {
        monitor.applyFastSample({CPUUsage{cpu, {}}, MemorySnapshot{used, 1000},
                                 MemoryPressureLevel::normal, NetworkRates{0, 0}});
    }
    // Lets the queued render run.
    void settle() {
        waitFor([] { return false; }, 50);
    }

    PrivateSessionBus bus;
    testing::LoadedStore store;
    SystemMonitor monitor{SystemMonitor::Providers{}, 60, 60};
    std::unique_ptr<StatusItemController> controller;
    std::unique_ptr<testing::DBusSignalRecorder> recorder;
};

TEST_F(StatusItemControllerBus, SameFiguresSendNothing) {
    sample(14, 470);
    settle();
    EXPECT_TRUE(controller->item()->label().startsWith(QStringLiteral("CPU 14%  RAM 47%")));
    drained();
    // New records with the same figures: nothing goes out.
    for (int i = 0; i < 2; ++i) {
        sample(14, 470);
        settle();
    }
    EXPECT_EQ(drained(), QStringList());
    // A new figure: the label once; the bars stay at the same pixel, so no icon, and the
    // tooltip waits.
    sample(15, 470);
    settle();
    EXPECT_EQ(drained(), QStringList{QStringLiteral("XAyatanaNewLabel")});
    // A bar moves: the icon, which hosts answer by reading the tooltip too.
    sample(60, 470);
    settle();
    EXPECT_EQ(drained(),
              (QStringList{QStringLiteral("XAyatanaNewLabel"), QStringLiteral("NewIcon")}));
}

// A burst of samples, or a change of the settings, renders once, after all of them.
TEST_F(StatusItemControllerBus, BurstRendersOnceWithTheLastFiguresAndStyle) {
    StatusNotifierItem& item = *controller->item();
    settle();
    QStringList seen;
    QObject::connect(&monitor, &SystemMonitor::metricsChanged, [&] { seen << item.label(); });
    sample(10, 100);
    sample(20, 200);
    sample(50, 500);
    // Nothing rendered while the burst came in.
    EXPECT_EQ(seen.size(), 3);
    EXPECT_EQ(seen.front(), seen.back());
    settle();
    EXPECT_TRUE(item.label().startsWith(QStringLiteral("CPU 50%  RAM 50%")))
        << item.label().toStdString();
    store.store.setMenuBarDisplayStyle(MenuBarDisplayStyle::miniBar);
    settle();
    EXPECT_TRUE(item.label().startsWith(QStringLiteral("C ▓▓▓░░ 50%")))
        << item.label().toStdString();
    EXPECT_TRUE(item.labelGuide().startsWith(QStringLiteral("C ▓▓▓▓▓ 888%")))
        << item.labelGuide().toStdString();
}

TEST_F(StatusItemControllerBus, ClicksAndMenuEntriesBecomeRequests) {
    QSignalSpy toggled(controller.get(), &StatusItemController::toggleRequested);
    emit controller->item()->activateRequested(QPoint(300, 12));
    emit controller->item()->secondaryActivateRequested(QPoint(0, 0));
    ASSERT_EQ(toggled.count(), 2);
    EXPECT_EQ(toggled[0][0].toRect(), QRect(300, 12, 1, 1));
    EXPECT_TRUE(toggled[1][0].toRect().isEmpty()); // unknown place: at the pointer

    QSignalSpy dashboard(controller.get(), &StatusItemController::showDashboardRequested);
    QSignalSpy settings(controller.get(), &StatusItemController::settingsRequested);
    QSignalSpy quit(controller.get(), &StatusItemController::quitRequested);
    for (int id : {1, 2, 3, 2})
        emit controller->menu()->triggered(id);
    EXPECT_EQ(dashboard.count(), 1);
    EXPECT_EQ(settings.count(), 2);
    EXPECT_EQ(quit.count(), 1);
}

TEST_F(StatusItemControllerBus, WideIsTheLabelAtIconHeightSquareIsThreeSizes) {
    sample(14, 470);
    const auto wide = make(Shape::wide);
    ASSERT_EQ(wide->item()->iconPixmaps().size(), 1);
    const StatusNotifierIconPixmap& label = wide->item()->iconPixmaps().front();
    EXPECT_EQ(label.height, 24);
    EXPECT_GT(label.width, 24 * 4); // "CPU 14%  RAM 47%"
    QList<int> sizes;
    for (const StatusNotifierIconPixmap& icon : controller->item()->iconPixmaps()) {
        EXPECT_EQ(icon.width, icon.height);
        sizes.append(icon.width);
    }
    EXPECT_EQ(sizes, (QList<int>{16, 22, 24}));
}

TEST_F(StatusItemControllerBus, UnderAppIndicatorAChangingLabelSendsNoNewIcon) {
    controller = make(Shape::symbolic);
    StatusNotifierItem& item = *controller->item();
    // A fixed symbolic icon by name, its pixmaps the fallback for themes without it: one light
    // colour on transparent.
    EXPECT_EQ(item.iconName(), StatusNotifierItemDriver::symbolicIconName());
    ASSERT_EQ(item.iconPixmaps().size(), 3);
    const StatusNotifierIconPixmaps pixmaps = item.iconPixmaps();
    const QByteArray& data = pixmaps.front().data;
    ASSERT_EQ(pixmaps.front().width * pixmaps.front().height * 4, data.size());
    int opaque = 0;
    int transparent = 0;
    for (qsizetype i = 0; i < data.size(); i += 4) {
        transparent += quint8(data[i]) == 0;
        if (quint8(data[i]) == 255) {
            ++opaque;
            EXPECT_EQ(data.mid(i + 1, 3).toHex().toStdString(), "eeeeec");
        }
    }
    EXPECT_GT(opaque, 20);
    EXPECT_GT(transparent, 20);

    settle();
    drained();
    // Figures that would move the live icon's bars every time.
    for (const double cpu : {5.0, 95.0, 40.0, 100.0, 0.0}) {
        sample(cpu, std::uint64_t(cpu * 10));
        settle();
    }
    const QStringList sent = drained();
    EXPECT_EQ(sent.count(QStringLiteral("XAyatanaNewLabel")), 5) << sent.join(u',').toStdString();
    EXPECT_EQ(sent.count(QStringLiteral("NewIcon")), 0) << sent.join(u',').toStdString();
    EXPECT_EQ(item.iconPixmaps(), pixmaps);
}

// How the tray stands in, at once, by what keeps the D-Bus item from being drawn; it steps
// back when a host takes the item, and comes back when the panel quits for good.
TEST_F(StatusItemControllerBus, TrayFallbackSaysWhyOnceAndStepsBackWhenAHostTakesTheItem) {
    struct Case {
        bool watcher;
        bool host;
        QString refusal;
        QString logged; // a part of the one line that says why
    };
    for (const Case& c :
         {Case{false, false, {}, "no StatusNotifierWatcher"},
          Case{true, true, "tray full", "tray full"}, Case{true, false, {}, "no host"},
          Case{true, false, "later", "no host"}}) {
        SCOPED_TRACE(c.logged.toStdString() + " " + c.refusal.toStdString());
        controller.reset();
        std::optional<testing::FakeStatusNotifierWatcher> watcher;
        if (c.watcher)
            watcher.emplace(bus.connect(), QStringList(), c.host);
        if (watcher)
            watcher->refuseWith = c.refusal;
        testing::LogCapture log(logUi());
        controller = make(Shape::square, true);
        // Without a watcher there is nothing to wait for: the tray icon at once.
        if (!c.watcher) {
            ASSERT_TRUE(controller->trayIcon() && controller->trayIcon()->isVisible());
        }
        ASSERT_TRUE(waitFor([&] {
            return controller->trayIcon() && controller->trayIcon()->isVisible();
        })) << "state "
            << int(controller->item()->state());
        QSystemTrayIcon* tray = controller->trayIcon();
        EXPECT_EQ(tray->toolTip(), controller->item()->label());
        EXPECT_EQ(tray->contextMenu()->actions().size(), 3);
        // Retries go on meanwhile; the reason is said once.
        waitFor([] { return false; }, 150);
        QStringList why = log.lines().filter(QStringLiteral("falls back to the system tray"));
        ASSERT_EQ(why.size(), 1) << log.lines().join(u'\n').toStdString();
        EXPECT_TRUE(why.front().contains(c.logged)) << why.front().toStdString();

        if (!watcher)
            watcher.emplace(bus.connect());
        watcher->refuseWith.clear();
        if (!c.host)
            watcher->setHost(true);
        ASSERT_TRUE(waitFor(
            [&] { return controller->item()->state() == StatusNotifierState::registered; }));
        EXPECT_FALSE(tray->isVisible());
        watcher.reset();
        EXPECT_TRUE(waitFor([&] { return tray->isVisible(); }));
    }
}

} // namespace
} // namespace lumetra

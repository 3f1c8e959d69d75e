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
#include "support/Cases.h"
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

struct ShapeCase {
    std::string name;
    QString desktop;
    QString override;
    StatusItemController::IconShape shape;
};

class IconShapeChoice : public ::testing::TestWithParam<ShapeCase> {};

TEST_P(IconShapeChoice, FollowsTheDesktopAndTheOverride) {
    EXPECT_EQ(StatusItemController::iconShapeFor(GetParam().desktop, GetParam().override),
              GetParam().shape);
}

using Shape = StatusItemController::IconShape;
INSTANTIATE_TEST_SUITE_P(
    StatusItem, IconShapeChoice,
    ::testing::Values(ShapeCase{"Ubuntu", "ubuntu:GNOME", "", Shape::symbolic},
                      ShapeCase{"Gnome", "GNOME", "", Shape::symbolic},
                      ShapeCase{"Unity", "Unity", "", Shape::symbolic},
                      ShapeCase{"Xfce", "XFCE", "", Shape::square},
                      ShapeCase{"Kde", "KDE", "", Shape::square},
                      ShapeCase{"OverrideSymbolic", "XFCE", "Symbolic", Shape::symbolic},
                      ShapeCase{"Unset", "", "", Shape::square},
                      ShapeCase{"Sway", "sway", "", Shape::wide},
                      ShapeCase{"RiverInAList", "river:wlroots", "", Shape::wide},
                      ShapeCase{"OverrideWide", "KDE", "wide", Shape::wide},
                      ShapeCase{"OverrideSquare", "sway", "SQUARE", Shape::square},
                      ShapeCase{"OverrideNonsense", "sway", "round", Shape::wide}),
    testing::byName);

// ---- the label guide -----------------------------------------------------------------

struct GuideCase {
    std::string name;
    LabelSettings settings;
    bool temperature;
    QString guide;
};

class LabelGuide : public ::testing::TestWithParam<GuideCase> {};

TEST_P(LabelGuide, IsTheWidestLabel) {
    SystemMetrics current;
    current.cpuUsage = 3;
    current.memoryPercentage = 12;
    current.memoryUsed = 2ull << 30;
    current.memoryTotal = 16ull << 30;
    if (GetParam().temperature)
        current.temperature = 41.6;
    current.downloadBytesPerSecond = 512;
    EXPECT_EQ(StatusItemController::labelGuide(GetParam().settings, current).toStdString(),
              GetParam().guide.toStdString());
}

LabelSettings settingsWith(QList<MenuBarMetric> metrics, MenuBarDisplayStyle style,
                           MemoryDisplayFormat memory = MemoryDisplayFormat::percentageOnly,
                           MenuBarSeparator separator = MenuBarSeparator::space) {
    LabelSettings settings;
    settings.displayedMetrics = std::move(metrics);
    settings.style = style;
    settings.memoryFormat = memory;
    settings.separator = separator;
    return settings;
}

using M = MenuBarMetric;
using S = MenuBarDisplayStyle;
INSTANTIATE_TEST_SUITE_P(
    StatusItem, LabelGuide,
    ::testing::Values(
        GuideCase{"DefaultText", LabelSettings{}, true,
                  QStringLiteral("CPU 888%  RAM 888%  888°C  ↓ 888 MB/s  ↑ 888 MB/s")},
        GuideCase{"NoTemperatureReading", LabelSettings{}, false,
                  QStringLiteral("CPU 888%  RAM 888%  ↓ 888 MB/s  ↑ 888 MB/s")},
        GuideCase{"UsedMemoryDot",
                  settingsWith({M::memory, M::cpu}, S::textOnly, MemoryDisplayFormat::usedOnly,
                               MenuBarSeparator::dot),
                  true, QStringLiteral("RAM 88.8 GB · CPU 888%")},
        GuideCase{"GraphChips", settingsWith({M::cpu, M::download}, S::compactGraph), true,
                  QStringLiteral("C ███████ 888%  ↓ 888 MB/s")},
        GuideCase{"BarChipsUnavailableTemperature", settingsWith({M::temperature}, S::miniBar),
                  false, QStringLiteral("T Unavailable")},
        GuideCase{"NothingShown", settingsWith({}, S::textOnly), true, QStringLiteral("lumetra")}),
    testing::byName);

// ---- the square live icon ------------------------------------------------------------

struct LevelsCase {
    std::string name;
    QList<MenuBarChipContent> chips;
    QList<std::optional<double>> levels;
};

class LiveIconLevels : public ::testing::TestWithParam<LevelsCase> {};

TEST_P(LiveIconLevels, AreTheFirstTwoWithAScale) {
    EXPECT_EQ(LiveIcon::levels(GetParam().chips, 11, 22), GetParam().levels);
}

MenuBarChipContent chip(MenuBarMetric metric, std::optional<double> percentage) {
    return {metric, QStringLiteral("x"), {}, percentage};
}

INSTANTIATE_TEST_SUITE_P(
    StatusItem, LiveIconLevels,
    ::testing::Values(
        LevelsCase{"CpuMemory", {chip(M::cpu, 40), chip(M::memory, 60)}, {40.0, 60.0}},
        LevelsCase{"RatesSkipped",
                   {chip(M::download, {}), chip(M::temperature, 90), chip(M::upload, {}),
                    chip(M::cpu, 5), chip(M::memory, 7)},
                   {90.0, 5.0}},
        LevelsCase{"TemperatureWithoutReading",
                   {chip(M::temperature, {}), chip(M::memory, 7)},
                   {std::nullopt, 7.0}},
        LevelsCase{"OneScaled", {chip(M::upload, {}), chip(M::memory, 30)}, {30.0}},
        LevelsCase{"OnlyRates", {chip(M::download, {}), chip(M::upload, {})}, {11.0, 22.0}}),
    testing::byName);

struct PixelCase {
    std::string name;
    int size;
    QList<std::optional<double>> levels;
    QPoint pixel;
    QColor color; // invalid: not a level colour
};

class LiveIconPixels : public ::testing::TestWithParam<PixelCase> {};

TEST_P(LiveIconPixels, FillBarsFromTheBottomInTheLevelColour) {
    const QImage image = LiveIcon::render(GetParam().size, GetParam().levels);
    ASSERT_EQ(image.size(), QSize(GetParam().size, GetParam().size));
    const QColor pixel = image.pixelColor(GetParam().pixel);
    if (GetParam().color.isValid())
        EXPECT_EQ(pixel.name(QColor::HexArgb).toStdString(),
                  GetParam().color.name(QColor::HexArgb).toStdString());
    else
        for (LevelColor level :
             {LevelColor::accent, LevelColor::orange, LevelColor::red, LevelColor::secondary})
            EXPECT_NE(pixel, LiveIcon::color(level));
}

INSTANTIATE_TEST_SUITE_P(
    StatusItem, LiveIconPixels,
    ::testing::Values(
        // At 16 px: bars 6 wide at x 1..6 and 9..14, the track inside from y 2 to 13.
        PixelCase{"FullRedCpuTop", 16, {100.0, 10.0}, {3, 2}, LiveIcon::color(LevelColor::red)},
        PixelCase{
            "LowMemoryBottom", 16, {100.0, 10.0}, {11, 13}, LiveIcon::color(LevelColor::accent)},
        PixelCase{"LowMemoryNotAtTop", 16, {100.0, 10.0}, {11, 4}, QColor()},
        PixelCase{"ZeroIsEmpty", 22, {80.0, 0.0}, {16, 19}, QColor()},
        PixelCase{
            "TinyLoadShowsAPixel", 24, {0.5, 0.0}, {5, 21}, LiveIcon::color(LevelColor::accent)},
        PixelCase{"CornerTransparent", 24, {50.0, 50.0}, {0, 0}, QColor(0, 0, 0, 0)}),
    testing::byName);

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
    sample(14, 470);
    settle();
    sample(14, 470);
    settle();
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

TEST_F(StatusItemControllerBus, BurstRendersOnceWithTheLastFigures) {
    StatusNotifierItem& item = *controller->item();
    settle();
    QStringList seen;
    QObject::connect(&monitor, &SystemMonitor::metricsChanged, [&] { seen << item.label(); });
    sample(10, 100);
    sample(20, 200);
    sample(99, 300);
    // Nothing rendered while the burst came in.
    EXPECT_EQ(seen.size(), 3);
    EXPECT_EQ(seen.front(), seen.back());
    settle();
    EXPECT_TRUE(item.label().startsWith(QStringLiteral("CPU 99%  RAM 30%")))
        << item.label().toStdString();
}

TEST_F(StatusItemControllerBus, StyleChangeRedrawsTheLabel) {
    StatusNotifierItem& item = *controller->item();
    sample(50, 500);
    settle();
    store.store.setMenuBarDisplayStyle(MenuBarDisplayStyle::miniBar);
    settle();
    EXPECT_TRUE(item.label().startsWith(QStringLiteral("C ▓▓▓░░ 50%")))
        << item.label().toStdString();
    EXPECT_TRUE(item.labelGuide().startsWith(QStringLiteral("C ▓▓▓▓▓ 888%")))
        << item.labelGuide().toStdString();
}

TEST_F(StatusItemControllerBus, ActivateTogglesAtThePoint) {
    QSignalSpy toggled(controller.get(), &StatusItemController::toggleRequested);
    emit controller->item()->activateRequested(QPoint(300, 12));
    emit controller->item()->secondaryActivateRequested(QPoint(0, 0));
    ASSERT_EQ(toggled.count(), 2);
    EXPECT_EQ(toggled[0][0].toRect(), QRect(300, 12, 1, 1));
    EXPECT_TRUE(toggled[1][0].toRect().isEmpty()); // unknown place: at the pointer
}

TEST_F(StatusItemControllerBus, MenuEntriesBecomeRequests) {
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

TEST_F(StatusItemControllerBus, TrayIconStandsInWhileNoWatcherRuns) {
    this->controller.reset(); // the one without a fallback
    const auto fallback = make(Shape::square, true);
    StatusItemController& controller = *fallback;
    // No watcher at start: the tray icon at once, with the label as its tooltip.
    ASSERT_NE(controller.trayIcon(), nullptr);
    EXPECT_TRUE(controller.trayIcon()->isVisible());
    EXPECT_EQ(controller.trayIcon()->toolTip(), controller.item()->label());
    EXPECT_EQ(controller.trayIcon()->contextMenu()->actions().size(), 3);

    // A panel with a watcher starts: the D-Bus item takes over.
    auto watcher = std::make_unique<testing::FakeStatusNotifierWatcher>(bus.connect());
    ASSERT_TRUE(waitFor([&] { return controller.item()->isRegistered(); }));
    EXPECT_FALSE(controller.trayIcon()->isVisible());
    EXPECT_EQ(watcher->registered, QStringList{StatusNotifierItem::objectPathName()});

    // It quits and does not come back: the tray icon again, after the grace period.
    watcher->quit();
    ASSERT_TRUE(waitFor([&] { return controller.trayIcon()->isVisible(); }));
}

TEST_F(StatusItemControllerBus, UnderAppIndicatorAChangingLabelSendsNoNewIcon) {
    controller = make(Shape::symbolic);
    StatusNotifierItem& item = *controller->item();
    // A fixed symbolic icon by name, its pixmaps the fallback for themes without it.
    EXPECT_EQ(item.iconName(), StatusNotifierItemDriver::symbolicIconName());
    ASSERT_EQ(item.iconPixmaps().size(), 3);
    const StatusNotifierIconPixmaps pixmaps = item.iconPixmaps();
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

TEST_F(StatusItemControllerBus, SymbolicFallbackPixmapIsOneLightColourOnTransparent) {
    controller = make(Shape::symbolic);
    const StatusNotifierIconPixmap& icon = controller->item()->iconPixmaps().front();
    ASSERT_EQ(icon.width * icon.height * 4, icon.data.size());
    int opaque = 0;
    int transparent = 0;
    for (qsizetype i = 0; i < icon.data.size(); i += 4) {
        const auto alpha = quint8(icon.data[i]);
        if (alpha == 0) {
            ++transparent;
        } else if (alpha == 255) {
            ++opaque;
            EXPECT_EQ(QByteArray(icon.data.constData() + i + 1, 3).toHex().toStdString(), "eeeeec");
        }
    }
    EXPECT_GT(opaque, 20);
    EXPECT_GT(transparent, 20);
}

// How the tray stands in, by what keeps the D-Bus item from being drawn.
struct FallbackCase {
    std::string name;
    bool host;
    QString refusal;
    QString logged; // a part of the one line that says why
};

class TrayFallbackStandsIn : public StatusItemControllerBus,
                             public ::testing::WithParamInterface<FallbackCase> {};

TEST_P(TrayFallbackStandsIn, ThenStepsBackWhenAHostTakesTheItem) {
    const FallbackCase& c = GetParam();
    testing::FakeStatusNotifierWatcher watcher(bus.connect(), {}, c.host);
    watcher.refuseWith = c.refusal;
    testing::LogCapture log(logUi());
    controller.reset();
    controller = make(Shape::square, true);
    ASSERT_TRUE(waitFor([&] {
        return controller->trayIcon() && controller->trayIcon()->isVisible();
    })) << "state "
        << int(controller->item()->state());
    // Retries go on meanwhile; the reason is said once.
    waitFor([] { return false; }, 150);
    QStringList why = log.lines().filter(QStringLiteral("falls back to the system tray"));
    ASSERT_EQ(why.size(), 1) << log.lines().join(u'\n').toStdString();
    EXPECT_TRUE(why.front().contains(c.logged)) << why.front().toStdString();
    EXPECT_EQ(controller->trayIcon()->contextMenu()->actions().size(), 3);

    // The watcher takes the item and a host draws it: the tray steps back.
    watcher.refuseWith.clear();
    if (!c.host)
        watcher.setHost(true);
    ASSERT_TRUE(
        waitFor([&] { return controller->item()->state() == StatusNotifierState::registered; }));
    EXPECT_FALSE(controller->trayIcon()->isVisible());
}

INSTANTIATE_TEST_SUITE_P(
    StatusItem, TrayFallbackStandsIn,
    ::testing::Values(FallbackCase{"Refused", true, QStringLiteral("tray full"),
                                   QStringLiteral("tray full")},
                      FallbackCase{"NoHost", false, {}, QStringLiteral("no host")},
                      FallbackCase{"NoHostAndRefused", false, QStringLiteral("later"),
                                   QStringLiteral("no host")}),
    testing::byName);

} // namespace
} // namespace lumetra

#include "menubar/StatusItemController.h"

#include "core/SystemMonitor.h"
#include "desktop/DBusMenu.h"
#include "desktop/PanelMenu.h"
#include "desktop/StatusNotifierItem.h"
#include "desktop/StatusNotifierState.h"
#include "format/MenuBarLabel.h"
#include "format/MetricCatalogue.h"
#include "format/MetricsTooltip.h"
#include "menubar/LabelImage.h"
#include "menubar/LiveIcon.h"
#include "menubar/MenuBarPopoverWindowController.h"
#include "menubar/PopoverPlacement.h"
#include "menubar/StatusNotifierItemDriver.h"
#include "menubar/TrayFallback.h"
#include "model/Logging.h"
#include "settings/SettingsStore.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSystemTrayIcon>

#include <algorithm>
#include <optional>
#include <utility>

namespace lumetra {

StatusItemController::StatusItemController(SystemMonitor& monitor, SettingsStore& settings,
                                           QObject* parent)
    : StatusItemController(monitor, settings, Options{}, parent) {}

StatusItemController::StatusItemController(SystemMonitor& monitor, SettingsStore& settings,
                                           Options options, QObject* parent)
    : QObject(parent), monitor_(monitor), settings_(settings), options_(std::move(options)),
      shape_(options_.iconShape.value_or(iconShapeFromEnvironment())),
      bus_(options_.bus ? *options_.bus : QDBusConnection::sessionBus()) {
    const PanelMenu menu{{
        {showDashboard, tr("Show Dashboard")},
        {settingsEntry, tr("Settings…")},
        {quitEntry, tr("Quit lumetra")},
    }};
    driver_ = std::make_unique<StatusNotifierItemDriver>(bus_, menu, shape_);
    tray_ = std::make_unique<TrayFallback>(menu);
    StatusNotifierItem& item = driver_->item();
    item.setRetryDelays(options_.firstRetryDelayMs, options_.maxRetryDelayMs);
    connect(&driver_->menu(), &DBusMenu::triggered, this, &StatusItemController::menuTriggered);
    connect(tray_.get(), &TrayFallback::triggered, this, &StatusItemController::menuTriggered);
    connect(tray_.get(), &TrayFallback::activated, this, &StatusItemController::toggleRequested);
    connect(&item, &StatusNotifierItem::activateRequested, this, &StatusItemController::activate);
    connect(&item, &StatusNotifierItem::secondaryActivateRequested, this,
            &StatusItemController::activate);
    connect(&item, &StatusNotifierItem::contextMenuRequested, this,
            &StatusItemController::activate);
    connect(&item, &StatusNotifierItem::stateChanged, this, &StatusItemController::updateFallback);

    fallbackTimer_.setSingleShot(true);
    connect(&fallbackTimer_, &QTimer::timeout, this, [this] {
        if (driver_->item().state() == StatusNotifierState::noWatcher)
            showTray(StatusNotifierState::noWatcher);
    });

    render();
    item.start();
    // At start-up there is nothing to wait for: stand in at once when nobody draws the item.
    if (item.state() == StatusNotifierState::noWatcher ||
        item.state() == StatusNotifierState::noBus)
        showTray(item.state());
    track();
}

StatusItemController::~StatusItemController() = default;

namespace {

// The shape LUMETRA_PANEL_ICON names, if it names one.
std::optional<StatusItemController::IconShape> shapeNamed(const QString& name) {
    using Shape = StatusItemController::IconShape;
    for (const auto& [shapeName, shape] :
         {std::pair{"wide", Shape::wide}, std::pair{"square", Shape::square},
          std::pair{"symbolic", Shape::symbolic}})
        if (name.trimmed().compare(QLatin1String(shapeName), Qt::CaseInsensitive) == 0)
            return shape;
    return std::nullopt;
}

} // namespace

StatusItemController::IconShape StatusItemController::iconShapeFor(const QString& currentDesktop,
                                                                   const QString& override) {
    if (const std::optional<IconShape> named = shapeNamed(override))
        return *named;
    // wlroots compositors, where waybar is the usual bar and draws icons at their width.
    static const QStringList wideDesktops{QStringLiteral("sway"),  QStringLiteral("hyprland"),
                                          QStringLiteral("river"), QStringLiteral("wayfire"),
                                          QStringLiteral("labwc"), QStringLiteral("niri"),
                                          QStringLiteral("dwl"),   QStringLiteral("wlroots")};
    // Desktops whose top bar shows an item's label as text (GNOME's AppIndicator extension,
    // Unity's indicators): the icon beside it is a fixed symbol.
    static const QStringList labelDesktops{QStringLiteral("gnome"), QStringLiteral("unity")};
    const QStringList desktops = currentDesktop.toLower().split(u':', Qt::SkipEmptyParts);
    for (const QString& desktop : desktops)
        if (wideDesktops.contains(desktop.trimmed()))
            return IconShape::wide;
    for (const QString& desktop : desktops)
        if (labelDesktops.contains(desktop.trimmed()))
            return IconShape::symbolic;
    return IconShape::square;
}

StatusItemController::IconShape StatusItemController::iconShapeFromEnvironment() {
    const QString override = qEnvironmentVariable("LUMETRA_PANEL_ICON").trimmed();
    if (!override.isEmpty() && !shapeNamed(override))
        qCWarning(logUi).noquote() << "LUMETRA_PANEL_ICON=" + override
                                   << "is not wide, square or symbolic; the desktop decides";
    return iconShapeFor(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), override);
}

QString StatusItemController::labelGuide(const LabelSettings& settings,
                                         const SystemMetrics& current) {
    SystemMetrics widest = current;
    for (const MetricDescription& row : metricCatalogue())
        row.widen(widest);
    MetricHistories full;
    for (const MetricDescription& row : metricCatalogue()) {
        if (row.history)
            for (int i = 0; i < 7; ++i)
                (full.*row.history).append(100);
    }
    QString guide = labelLine(widest, full, settings);
    for (QChar& c : guide)
        if (c.isDigit())
            c = u'8';
    return guide;
}

StatusNotifierIconPixmap StatusItemController::iconPixmap(const QImage& image) {
    return StatusNotifierItemDriver::iconPixmap(image);
}

StatusNotifierItem* StatusItemController::item() const {
    return &driver_->item();
}

DBusMenu* StatusItemController::menu() const {
    return &driver_->menu();
}

QSystemTrayIcon* StatusItemController::trayIcon() const {
    return tray_->trayIcon();
}

bool StatusItemController::panelAvailable() const {
    return driver_->item().isWatcherPresent() || QSystemTrayIcon::isSystemTrayAvailable();
}

void StatusItemController::track() {
    const auto schedule = [this] { scheduleRender(); };
    connect(&monitor_, &SystemMonitor::metricsChanged, this, schedule);
    connect(&monitor_, &SystemMonitor::historiesChanged, this, schedule);
    connect(&settings_, &SettingsStore::displayedMetricsChanged, this, schedule);
    connect(&settings_, &SettingsStore::separatorChanged, this, schedule);
    connect(&settings_, &SettingsStore::memoryFormatChanged, this, schedule);
    connect(&settings_, &SettingsStore::temperatureFormatChanged, this, schedule);
    connect(&settings_, &SettingsStore::menuBarDisplayStyleChanged, this, schedule);
}

void StatusItemController::scheduleRender() {
    // One sample changes the record and both histories: render once, after all of them.
    if (renderQueued_)
        return;
    renderQueued_ = true;
    QMetaObject::invokeMethod(this, &StatusItemController::render, Qt::QueuedConnection);
}

void StatusItemController::render() {
    renderQueued_ = false;
    // Renders follow every sample, so this notices within a tick that the session's bus went
    // away; Qt reports no disconnection of its own. A connection that was ever made keeps its
    // unique name, which tells a lost bus from none at all.
    if (!busLost_ && !bus_.baseService().isEmpty() && !bus_.isConnected()) {
        busLost_ = true;
        emit sessionBusLost();
    }
    const LabelSettings settings = LabelSettings::from(settings_);
    const SystemMetrics& metrics = monitor_.metrics();
    const QList<MenuBarChipContent> chipList = chips(metrics, monitor_.histories(), settings);
    const QString line = labelLine(metrics, monitor_.histories(), settings);

    content_.label = line;
    content_.guide = labelGuide(settings, metrics);
    content_.levels = LiveIcon::levels(chipList, metrics.cpuUsage, metrics.memoryPercentage);
    if (shape_ == IconShape::wide)
        content_.pieces = settings.style == MenuBarDisplayStyle::textOnly
                              ? LabelImage::textPieces(line)
                              : LabelImage::pieces(chipList, settings.style, settings.separator);
    content_.toolTip = metricsTooltip(metrics, monitor_.diskVolumes());
    driver_->show(content_);
    tray_->update(content_);
}

void StatusItemController::menuTriggered(int id) {
    switch (id) {
    case showDashboard:
        emit showDashboardRequested();
        break;
    case settingsEntry:
        emit settingsRequested();
        break;
    case quitEntry:
        emit quitRequested();
        break;
    default:
        break;
    }
}

void StatusItemController::activate(const QPoint& position) {
    // Some hosts send (0, 0) when they do not know where the item is: open at the pointer.
    if (position.isNull()) {
        emit toggleRequested(QRect());
        return;
    }
    if (isIconRelative(position, driver_->item().iconPixmaps())) {
        emit toggleRequested(anchorForIconRelativeClick(position));
        return;
    }
    // Hosts give the click in device pixels; windows are placed in device-independent ones.
    const QPointF logical =
        deviceToLogical(position, MenuBarPopoverWindowController::screenSpaces());
    emit toggleRequested(QRect(logical.toPoint(), QSize(1, 1)));
}

bool StatusItemController::isIconRelative(const QPoint& position,
                                          const StatusNotifierIconPixmaps& pixmaps) {
    int width = 0;
    int height = 0;
    for (const StatusNotifierIconPixmap& pixmap : pixmaps) {
        width = std::max(width, pixmap.width);
        height = std::max(height, pixmap.height);
    }
    return position.x() >= 0 && position.y() >= 0 && position.x() < width && position.y() < height;
}

QRect StatusItemController::anchorForIconRelativeClick(const QPoint& position) {
    // On X11 the pointer is where the click was.
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || !screen)
        return {};
    // A Wayland compositor shows an X11 client no pointer over its panels: take the tray's
    // usual place, the right end of a top panel, at the click's height in the icon.
    const QRect screenArea = screen->geometry();
    const int y = int(position.y() / screen->devicePixelRatio());
    return QRect(QPoint(screenArea.right(), screenArea.top() + y), QSize(1, 1));
}

void StatusItemController::updateFallback() {
    const StatusNotifierState state = driver_->item().state();
    switch (state) {
    case StatusNotifierState::registered:
        fallbackTimer_.stop();
        if (tray_->isShown()) {
            qCWarning(logUi) << "a panel draws lumetra's item again: the tray icon steps back";
            tray_->hide();
        }
        toldFallback_.reset();
        return;
    case StatusNotifierState::connecting:
        return;
    case StatusNotifierState::noWatcher:
        // A panel that restarts comes back within the grace period.
        if (!tray_->isShown() && !fallbackTimer_.isActive())
            fallbackTimer_.start(options_.fallbackDelayMs);
        return;
    case StatusNotifierState::noBus:
    case StatusNotifierState::refused:
    case StatusNotifierState::noHost:
        fallbackTimer_.stop();
        showTray(state);
        return;
    }
}

void StatusItemController::showTray(StatusNotifierState reason) {
    if (!options_.trayFallback)
        return;
    if (toldFallback_ != reason) {
        toldFallback_ = reason;
        switch (reason) {
        case StatusNotifierState::noBus:
            qCWarning(logUi) << "no session bus: lumetra's item falls back to the system tray";
            break;
        case StatusNotifierState::noWatcher:
            qCWarning(logUi) << "no StatusNotifierWatcher on the session bus: lumetra's item "
                                "falls back to the system tray";
            break;
        case StatusNotifierState::refused:
            qCWarning(logUi).noquote()
                << "the panel's StatusNotifierWatcher refused lumetra's item (" +
                       driver_->item().refusal() + "): it falls back to the system tray";
            break;
        case StatusNotifierState::noHost:
            qCWarning(logUi) << "the StatusNotifierWatcher has no host to draw lumetra's item: "
                                "it falls back to the system tray";
            break;
        case StatusNotifierState::connecting:
        case StatusNotifierState::registered:
            break;
        }
    }
    if (!tray_->isShown())
        tray_->show(content_);
}

} // namespace lumetra

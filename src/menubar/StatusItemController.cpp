#include "menubar/StatusItemController.h"

#include "core/SystemMonitor.h"
#include "desktop/DBusMenu.h"
#include "desktop/StatusNotifierItem.h"
#include "format/MenuBarLabel.h"
#include "format/MetricCatalogue.h"
#include "format/MetricsTooltip.h"
#include "menubar/LabelFont.h"
#include "menubar/LabelImage.h"
#include "menubar/LiveIcon.h"
#include "model/Logging.h"
#include "settings/SettingsStore.h"

#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

namespace lumetra {

namespace {

// The sizes the square icon is drawn at; hosts pick the nearest and scale.
constexpr int kSquareSizes[] = {16, 22, 24};
constexpr int kTraySizes[] = {16, 22, 24, 32, 48};
// How stale a tooltip may grow on hosts that cache it while the icon stays the same.
constexpr qint64 kToolTipIntervalMs = 10000;
// The wide label's height: a bar's usual icon size.
constexpr int kWideHeight = 24;
// Panels that draw wide icons are dark by default; the label is drawn light on them.
const QColor kWideTextColor(0xF2, 0xF2, 0xF7);

} // namespace

StatusItemController::StatusItemController(SystemMonitor& monitor, SettingsStore& settings,
                                           QObject* parent)
    : StatusItemController(monitor, settings, Options{}, parent) {}

StatusItemController::StatusItemController(SystemMonitor& monitor, SettingsStore& settings,
                                           Options options, QObject* parent)
    : QObject(parent), monitor_(monitor), settings_(settings), options_(std::move(options)),
      shape_(options_.iconShape.value_or(iconShapeFromEnvironment())) {
    menu_ = std::make_unique<DBusMenu>(QList<DBusMenuEntry>{
        {showDashboard, tr("Show Dashboard")},
        {settingsEntry, tr("Settings…")},
        {quitEntry, tr("Quit lumetra")},
    });
    connect(menu_.get(), &DBusMenu::triggered, this, &StatusItemController::menuTriggered);

    item_ = std::make_unique<StatusNotifierItem>(
        options_.bus ? *options_.bus : QDBusConnection::sessionBus(), *menu_);
    item_->setToolTip(QStringLiteral("lumetra"), {});
    connect(item_.get(), &StatusNotifierItem::activateRequested, this,
            &StatusItemController::activate);
    connect(item_.get(), &StatusNotifierItem::secondaryActivateRequested, this,
            &StatusItemController::activate);
    connect(item_.get(), &StatusNotifierItem::contextMenuRequested, this,
            &StatusItemController::activate);
    connect(item_.get(), &StatusNotifierItem::watcherPresentChanged, this,
            &StatusItemController::updateFallback);

    sinceToolTip_.start();
    fallbackTimer_.setSingleShot(true);
    connect(&fallbackTimer_, &QTimer::timeout, this, &StatusItemController::showTray);

    render();
    if (!item_->start())
        qCWarning(logUi) << "no session bus: the panel item falls back to the system tray";
    // At start-up there is nothing to wait for: stand in at once when no watcher runs.
    if (!item_->isWatcherPresent() && options_.trayFallback)
        showTray();
    track();
}

StatusItemController::~StatusItemController() {
    delete tray_;
}

StatusItemController::IconShape StatusItemController::iconShapeFor(const QString& currentDesktop,
                                                                   const QString& override) {
    if (override.compare(QLatin1String("wide"), Qt::CaseInsensitive) == 0)
        return IconShape::wide;
    if (override.compare(QLatin1String("square"), Qt::CaseInsensitive) == 0)
        return IconShape::square;
    // wlroots compositors, where waybar is the usual bar and draws icons at their width.
    static const QStringList wideDesktops{QStringLiteral("sway"),  QStringLiteral("hyprland"),
                                          QStringLiteral("river"), QStringLiteral("wayfire"),
                                          QStringLiteral("labwc"), QStringLiteral("niri"),
                                          QStringLiteral("dwl"),   QStringLiteral("wlroots")};
    for (const QString& desktop : currentDesktop.split(u':', Qt::SkipEmptyParts))
        if (wideDesktops.contains(desktop.trimmed().toLower()))
            return IconShape::wide;
    return IconShape::square;
}

StatusItemController::IconShape StatusItemController::iconShapeFromEnvironment() {
    return iconShapeFor(qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
                        qEnvironmentVariable("LUMETRA_PANEL_ICON"));
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
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    QList<quint32> pixels;
    pixels.reserve(qsizetype(argb.width()) * argb.height());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const quint32*>(argb.constScanLine(y));
        pixels.append(QList<quint32>(line, line + argb.width()));
    }
    return StatusNotifierIconPixmap::fromArgb32(argb.width(), argb.height(), pixels);
}

bool StatusItemController::panelAvailable() const {
    return item_->isWatcherPresent() || QSystemTrayIcon::isSystemTrayAvailable();
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
    const LabelSettings settings = LabelSettings::from(settings_);
    const SystemMetrics& metrics = monitor_.metrics();
    const QList<MenuBarChipContent> chipList = chips(metrics, monitor_.histories(), settings);
    const QString line = labelLine(metrics, monitor_.histories(), settings);
    const QList<std::optional<double>> levels =
        LiveIcon::levels(chipList, metrics.cpuUsage, metrics.memoryPercentage);

    item_->setLabel(line, labelGuide(settings, metrics));
    // The image is drawn only when what it shows changed: most ticks move no bar by a pixel.
    bool iconChanged = false;
    if (shape_ == IconShape::wide) {
        QList<LabelImagePiece> pieces =
            settings.style == MenuBarDisplayStyle::textOnly
                ? LabelImage::textPieces(line)
                : LabelImage::pieces(chipList, settings.style, settings.separator);
        if (pieces != drawnPieces_ || item_->iconPixmaps().isEmpty()) {
            drawnPieces_ = std::move(pieces);
            iconChanged = item_->setIconPixmaps({iconPixmap(
                LabelImage::render(drawnPieces_, kWideHeight, labelFont(), kWideTextColor))});
        }
    } else if (levels != drawnLevels_ || item_->iconPixmaps().isEmpty()) {
        drawnLevels_ = levels;
        StatusNotifierIconPixmaps pixmaps;
        for (const int size : kSquareSizes)
            pixmaps.append(iconPixmap(LiveIcon::render(size, levels)));
        iconChanged = item_->setIconPixmaps(pixmaps);
    }
    item_->setToolTip(QStringLiteral("lumetra"), metricsTooltip(metrics, monitor_.diskVolumes()));
    // The tooltip's figures move on every tick. Trays that show tooltips read the whole item
    // again on any New… signal (xfce4-panel: some 6 kB a time), so a NewIcon carries the
    // tooltip too; on its own NewToolTip goes out at most every few seconds.
    if (iconChanged) {
        item_->noteToolTipDelivered();
        sinceToolTip_.restart();
    } else if (!item_->isToolTipAnnounced() && sinceToolTip_.hasExpired(kToolTipIntervalMs)) {
        item_->announceToolTip();
        sinceToolTip_.restart();
    }

    if (tray_) {
        if (line != trayToolTip_) {
            trayToolTip_ = line;
            tray_->setToolTip(line);
        }
        if (levels != trayLevels_) {
            trayLevels_ = levels;
            const QImage image = LiveIcon::render(24, levels);
            if (image != trayImage_) {
                trayImage_ = image;
                tray_->setIcon(trayIconImage(levels));
            }
        }
    }
}

QIcon StatusItemController::trayIconImage(const QList<std::optional<double>>& levels) const {
    QIcon icon;
    for (const int size : kTraySizes)
        icon.addPixmap(QPixmap::fromImage(LiveIcon::render(size, levels)));
    return icon;
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
    emit toggleRequested(position.isNull() ? QRect() : QRect(position, QSize(1, 1)));
}

void StatusItemController::updateFallback() {
    if (item_->isWatcherPresent()) {
        fallbackTimer_.stop();
        if (tray_ && tray_->isVisible()) {
            qCInfo(logUi) << "a StatusNotifierWatcher appeared: the panel item moves to it";
            tray_->hide();
        }
        return;
    }
    if (options_.trayFallback && !fallbackTimer_.isActive())
        fallbackTimer_.start(options_.fallbackDelayMs);
}

void StatusItemController::showTray() {
    if (!options_.trayFallback || item_->isWatcherPresent())
        return;
    if (!tray_) {
        // Created only while no watcher runs, so Qt puts it in the XEmbed tray rather than
        // making a second StatusNotifierItem.
        tray_ = new QSystemTrayIcon();
        trayMenu_ = std::make_unique<QMenu>();
        trayMenu_->addAction(tr("Show Dashboard"), this,
                             &StatusItemController::showDashboardRequested);
        trayMenu_->addAction(tr("Settings…"), this, &StatusItemController::settingsRequested);
        trayMenu_->addAction(tr("Quit lumetra"), this, &StatusItemController::quitRequested);
        tray_->setContextMenu(trayMenu_.get());
        connect(tray_, &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger ||
                        reason == QSystemTrayIcon::MiddleClick)
                        emit toggleRequested(tray_->geometry());
                });
        trayLevels_.clear();
        trayImage_ = QImage();
        trayToolTip_.clear();
        render();
    }
    tray_->show();
}

} // namespace lumetra

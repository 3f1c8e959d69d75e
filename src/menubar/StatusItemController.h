#pragma once

#include "desktop/StatusNotifierIconPixmap.h"
#include "format/LabelSettings.h"
#include "menubar/PanelIconShape.h"
#include "menubar/PanelItemContent.h"
#include "model/SystemMetrics.h"

#include <QDBusConnection>
#include <QImage>
#include <QObject>
#include <QRect>
#include <QTimer>

#include <memory>
#include <optional>

class QSystemTrayIcon;

namespace lumetra {

class DBusMenu;
class SettingsStore;
class StatusNotifierItem;
class StatusNotifierItemDriver;
class SystemMonitor;
class TrayFallback;
enum class StatusNotifierState;

// The panel item. It works out what the item shows from the monitor and the label settings,
// every burst of changes once, and hands it to the StatusNotifierItem on the session bus
// (the label as text, which GNOME's top bar shows, and an icon in the shape the desktop's
// panel draws). Whenever nobody draws that item (no watcher, a watcher that refused it or
// has no host) a tray icon stands in, and steps back when a host takes the item; stderr
// says once why. Clicks and menu entries come out as requests for src/app.
class StatusItemController : public QObject {
    Q_OBJECT

public:
    using IconShape = PanelIconShape;

    struct Options {
        // The bus to export the item on; the session bus when absent.
        std::optional<QDBusConnection> bus;
        // From the environment when absent (see iconShapeFor).
        std::optional<IconShape> iconShape;
        // Whether a QSystemTrayIcon may stand in when nobody draws the D-Bus item.
        bool trayFallback = true;
        // How long after the watcher vanished the tray icon stands in (a panel restarting
        // comes back within this).
        int fallbackDelayMs = 3000;
        // The pauses between registrations the watcher refused or the host dropped.
        int firstRetryDelayMs = 1000;
        int maxRetryDelayMs = 60000;
    };

    StatusItemController(SystemMonitor& monitor, SettingsStore& settings, Options options,
                         QObject* parent = nullptr);
    StatusItemController(SystemMonitor& monitor, SettingsStore& settings,
                         QObject* parent = nullptr);
    ~StatusItemController() override;

    // LUMETRA_PANEL_ICON=wide|square|symbolic decides; otherwise wide on the wlroots desktops
    // whose bars (waybar) draw an item's icon at its own width, symbolic on GNOME and Unity
    // (AppIndicator shows the label as text beside it), square elsewhere.
    static IconShape iconShapeFor(const QString& currentDesktop, const QString& override);
    static IconShape iconShapeFromEnvironment();

    // The widest text the label can take with these settings: every figure at its widest
    // (100 %, the longest rate, the machine's memory total) with every digit an 8.
    static QString labelGuide(const LabelSettings& settings, const SystemMetrics& current);

    // An image as a StatusNotifierItem pixmap (ARGB32, network byte order).
    static StatusNotifierIconPixmap iconPixmap(const QImage& image);
    // Some hosts (waybar 0.9) report a click relative to the icon, not on the screen: such a
    // position lies within the box of the largest picture the item shows.
    static bool isIconRelative(const QPoint& position, const StatusNotifierIconPixmaps& pixmaps);

    StatusNotifierItem* item() const;
    DBusMenu* menu() const;
    QSystemTrayIcon* trayIcon() const;
    IconShape iconShape() const { return shape_; }
    // Something can show the item: a watcher, or an XEmbed tray for the fallback.
    bool panelAvailable() const;

    // The menu's entries, in order.
    enum MenuEntry { showDashboard = 1, settingsEntry = 2, quitEntry = 3 };

signals:
    // A click on the item: toggle the popover around `anchor` (screen coordinates; empty
    // means at the pointer).
    void toggleRequested(const QRect& anchor);
    void showDashboardRequested();
    void settingsRequested();
    void quitRequested();
    // The session bus went away under the running item (its daemon died or restarted).
    void sessionBusLost();

private:
    void track();
    void scheduleRender();
    void render();
    void menuTriggered(int id);
    void activate(const QPoint& position);
    static QRect anchorForIconRelativeClick(const QPoint& position);
    void updateFallback();
    void showTray(StatusNotifierState reason);

    SystemMonitor& monitor_;
    SettingsStore& settings_;
    Options options_;
    IconShape shape_;
    QDBusConnection bus_;
    std::unique_ptr<StatusNotifierItemDriver> driver_;
    std::unique_ptr<TrayFallback> tray_;
    QTimer fallbackTimer_;
    PanelItemContent content_;
    std::optional<StatusNotifierState> toldFallback_;
    bool renderQueued_ = false;
    bool busLost_ = false;
};

} // namespace lumetra

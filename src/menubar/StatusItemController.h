#pragma once

#include "desktop/StatusNotifierIconPixmap.h"
#include "format/LabelSettings.h"
#include "menubar/LabelImage.h"
#include "model/SystemMetrics.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>

#include <memory>
#include <optional>

class QMenu;
class QSystemTrayIcon;

namespace lumetra {

class DBusMenu;
class SettingsStore;
class StatusNotifierItem;
class SystemMonitor;

// The panel item. In front, a StatusNotifierItem on the session bus that carries the label
// as text (GNOME's top bar shows it) and as an image, square or as wide as the label,
// depending on what the desktop's panel draws. Where no StatusNotifierWatcher runs, a
// QSystemTrayIcon over the XEmbed tray with the square live icon and the label as tooltip;
// when a watcher appears later the D-Bus item takes over. The label follows the monitor and
// the label settings, every burst of changes rendered once. Clicks and menu entries come
// out as requests for src/app.
class StatusItemController : public QObject {
    Q_OBJECT

public:
    // How the icon image is drawn: the label as a wide image, or the square live icon.
    enum class IconShape { wide, square };

    struct Options {
        // The bus to export the item on; the session bus when absent.
        std::optional<QDBusConnection> bus;
        // From the environment when absent (see iconShapeFor).
        std::optional<IconShape> iconShape;
        // Whether a QSystemTrayIcon may stand in when no watcher runs.
        bool trayFallback = true;
        // How long after the watcher vanished the tray icon stands in (a panel restarting
        // comes back within this).
        int fallbackDelayMs = 3000;
    };

    StatusItemController(SystemMonitor& monitor, SettingsStore& settings, Options options,
                         QObject* parent = nullptr);
    StatusItemController(SystemMonitor& monitor, SettingsStore& settings,
                         QObject* parent = nullptr);
    ~StatusItemController() override;

    // LUMETRA_PANEL_ICON=wide|square decides; otherwise wide on the wlroots desktops whose
    // bars (waybar) draw an item's icon at its own width, square elsewhere.
    static IconShape iconShapeFor(const QString& currentDesktop, const QString& override);
    static IconShape iconShapeFromEnvironment();

    // The widest text the label can take with these settings: every figure at its widest
    // (100 %, the longest rate, the machine's memory total) with every digit an 8.
    static QString labelGuide(const LabelSettings& settings, const SystemMetrics& current);

    // An image as a StatusNotifierItem pixmap (ARGB32, network byte order).
    static StatusNotifierIconPixmap iconPixmap(const QImage& image);

    StatusNotifierItem* item() const { return item_.get(); }
    DBusMenu* menu() const { return menu_.get(); }
    QSystemTrayIcon* trayIcon() const { return tray_; }
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

private:
    void track();
    void scheduleRender();
    void render();
    void menuTriggered(int id);
    void activate(const QPoint& position);
    void updateFallback();
    void showTray();
    QIcon trayIconImage(const QList<std::optional<double>>& levels) const;

    SystemMonitor& monitor_;
    SettingsStore& settings_;
    Options options_;
    IconShape shape_;
    std::unique_ptr<DBusMenu> menu_;
    std::unique_ptr<StatusNotifierItem> item_;
    QSystemTrayIcon* tray_ = nullptr;
    std::unique_ptr<QMenu> trayMenu_;
    QTimer fallbackTimer_;
    QElapsedTimer sinceToolTip_;
    bool renderQueued_ = false;
    // What the item's image shows now, so an unchanged label is not drawn again.
    QList<std::optional<double>> drawnLevels_;
    QList<LabelImagePiece> drawnPieces_;
    QString trayToolTip_;
    QList<std::optional<double>> trayLevels_;
    QImage trayImage_;
};

} // namespace lumetra

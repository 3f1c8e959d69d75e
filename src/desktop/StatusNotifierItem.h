#pragma once

#include "desktop/StatusNotifierDBusObject.h"
#include "desktop/StatusNotifierIconPixmap.h"
#include "desktop/StatusNotifierState.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QPoint>
#include <QTimer>

class QDBusServiceWatcher;

namespace lumetra {

class DBusMenu;

// The panel item as an org.kde.StatusNotifierItem on the session bus: a text label for the
// hosts that show one (XAyatanaLabel), an icon, a tooltip and a menu. It owns the name
// org.kde.StatusNotifierItem-PID-1, registers with org.kde.StatusNotifierWatcher, and again
// whenever that name gets a new owner (a restarted panel or shell) or a host registers. A
// refused registration or a host that dropped the item is tried again without end, the pause
// doubling from a second to a minute. state() tells whether anybody draws the item, so the
// tray can stand in. Signals go out only when what they announce really changed, so a quiet
// tick sends nothing.
class StatusNotifierItem : public StatusNotifierDBusObject {
    Q_OBJECT
    Q_PROPERTY(bool watcherPresent READ isWatcherPresent NOTIFY watcherPresentChanged)
    Q_PROPERTY(bool registered READ isRegistered NOTIFY registeredChanged)
    Q_PROPERTY(lumetra::StatusNotifierState state READ state NOTIFY stateChanged)

public:
    static QString watcherService();
    static QString objectPathName(); // "/StatusNotifierItem"
    static QString menuPathName();   // "/MenuBar"

    // `menu` is exported beside the item and named by its Menu property; not owned.
    StatusNotifierItem(const QDBusConnection& bus, DBusMenu& menu, QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    // Exports the item and its menu, takes the item's bus name and registers with the watcher
    // if there is one. False without a usable bus.
    bool start();

    const QString& serviceName() const { return service_; }
    bool isWatcherPresent() const { return watcherPresent_; }
    bool isRegistered() const { return registered_; }
    bool isHostPresent() const { return hostPresent_; }
    StatusNotifierState state() const { return state_; }
    // The watcher's answer when it refused the item.
    const QString& refusal() const { return refusal_; }

    // The pause before the first retry and its ceiling; each retry in a row doubles it.
    void setRetryDelays(int firstMs, int maxMs);
    int nextRetryDelayMs() const { return retryDelayMs_; }

    const QString& label() const { return label_; }
    const QString& labelGuide() const { return labelGuide_; }
    const StatusNotifierIconPixmaps& iconPixmaps() const { return pixmaps_; }
    const QString& iconName() const { return iconName_; }

    void setTitle(const QString& title);
    // XAyatanaNewLabel goes out only when the label or the guide changed; returns whether.
    bool setLabel(const QString& label, const QString& guide);
    // NewIcon goes out only when the images changed; returns whether.
    bool setIconPixmaps(const StatusNotifierIconPixmaps& pixmaps);
    // An icon from the desktop's theme by name, the pixmaps its fallback; NewIcon only when
    // either changed. Empty: the pixmaps alone.
    bool setIcon(const QString& name, const StatusNotifierIconPixmaps& pixmaps);
    // Stored for hosts that ask; announced with NewToolTip only by announceToolTip(), so a
    // tooltip that changes on every tick (the rates) does not cost a signal on every tick.
    void setToolTip(const QString& title, const QString& text);
    // NewToolTip, when the tooltip changed since it was last announced.
    void announceToolTip();
    // The tooltip reached the hosts another way (they read the whole item again on NewIcon):
    // no NewToolTip is due for it.
    void noteToolTipDelivered() { toolTipAnnounced_ = true; }
    bool isToolTipAnnounced() const { return toolTipAnnounced_; }

signals:
    void activateRequested(const QPoint& position);
    void secondaryActivateRequested(const QPoint& position);
    void contextMenuRequested(const QPoint& position);
    void scrollRequested(int delta, const QString& orientation);
    void watcherPresentChanged();
    void registeredChanged();
    void stateChanged();

protected:
    QVariantMap properties() const override;
    bool handleMethod(const QDBusMessage& message, const QDBusConnection& connection) override;

private slots:
    void itemUnregistered(const QString& service);
    void hostRegistered();
    void hostUnregistered();

private:
    void watcherOwnerChanged(const QString& newOwner);
    void registerNow();
    void retryLater();
    void readHostPresent();
    void registerWithWatcher();
    void callRegister();
    bool namesThisItem(const QString& entry) const;
    void setWatcherPresent(bool present);
    void setRegistered(bool registered);
    void updateState();

    QDBusConnection connection_;
    DBusMenu& menu_;
    QDBusServiceWatcher* watcher_ = nullptr;
    QString service_;
    bool started_ = false;
    bool watcherPresent_ = false;
    bool registered_ = false;
    // Until the watcher says otherwise: one that cannot answer is given the benefit of the
    // doubt.
    bool hostPresent_ = true;
    QString refusal_;
    StatusNotifierState state_ = StatusNotifierState::noBus;
    const QString id_ = QStringLiteral("lumetra");
    QString title_ = QStringLiteral("lumetra");
    QString label_;
    QString labelGuide_;
    StatusNotifierIconPixmaps pixmaps_;
    QString iconName_;
    QString toolTipTitle_;
    QString toolTipText_;
    bool toolTipAnnounced_ = true;
    QTimer retryTimer_;
    int firstRetryDelayMs_ = 1000;
    int maxRetryDelayMs_ = 60000;
    int retryDelayMs_ = 1000;
    // How long the current registration has held: one that held for the longest pause
    // starts the next round of retries from the shortest again.
    QElapsedTimer registeredFor_;
};

} // namespace lumetra

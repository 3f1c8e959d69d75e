#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace lumetra::testing {

// A StatusNotifierWatcher as panels run it, counting registrations; it owns the watcher's
// name on `connection` while it lives. It can run without a host, and refuse items.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostRegistered)

public:
    // `found`: items the watcher lists without a registration (found on the bus by itself).
    explicit FakeStatusNotifierWatcher(QDBusConnection connection, QStringList found = {},
                                       bool host = true)
        : connection_(connection), listed_(std::move(found)), host_(host) {
        connection_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                   QDBusConnection::ExportAllSlots |
                                       QDBusConnection::ExportAllProperties);
        owns_ = connection_.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }
    ~FakeStatusNotifierWatcher() override { quit(); }

    bool ownsName() const { return owns_; }
    // The panel goes away: the name is released.
    void quit() {
        if (owns_)
            connection_.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        connection_.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
        owns_ = false;
    }

    // The host drops an item, as GNOME's extension does when it cannot build its proxy; the
    // fake then forgets every item it listed.
    void drop(const QString& id) {
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"),
                                       QStringLiteral("org.kde.StatusNotifierWatcher"),
                                       QStringLiteral("StatusNotifierItemUnregistered"));
        signal << id;
        listed_.clear();
        connection_.send(signal);
    }

    // A host (a tray, a top bar) starts or quits; the watcher announces it.
    void setHost(bool host) {
        host_ = host;
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"),
                                       QStringLiteral("org.kde.StatusNotifierWatcher"),
                                       host ? QStringLiteral("StatusNotifierHostRegistered")
                                            : QStringLiteral("StatusNotifierHostUnregistered"));
        connection_.send(signal);
    }

    QStringList registered;
    // While set, registrations are answered with this D-Bus error (and still counted).
    QString refuseWith;
    QStringList items() const { return listed_; }
    bool hostRegistered() const { return host_; }

public slots:
    void RegisterStatusNotifierItem(const QString& service) {
        registered.append(service);
        if (!refuseWith.isEmpty()) {
            sendErrorReply(QDBusError::AccessDenied, refuseWith);
            return;
        }
        listed_.append(service);
    }

private:
    QDBusConnection connection_;
    QStringList listed_;
    bool host_ = true;
    bool owns_ = false;
};

} // namespace lumetra::testing

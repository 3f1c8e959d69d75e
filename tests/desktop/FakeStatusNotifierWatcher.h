#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace lumetra::testing {

// A StatusNotifierWatcher as panels run it, counting registrations; it owns the watcher's
// name on `connection` while it lives.
class FakeStatusNotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    // `found`: items the watcher lists without a registration (found on the bus by itself).
    explicit FakeStatusNotifierWatcher(QDBusConnection connection, QStringList found = {})
        : connection_(connection), listed_(std::move(found)) {
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

    QStringList registered;
    QStringList items() const { return listed_; }

public slots:
    void RegisterStatusNotifierItem(const QString& service) {
        registered.append(service);
        listed_.append(service);
    }

private:
    QDBusConnection connection_;
    QStringList listed_;
    bool owns_ = false;
};

} // namespace lumetra::testing

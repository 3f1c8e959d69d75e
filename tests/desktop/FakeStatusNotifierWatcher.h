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

public:
    explicit FakeStatusNotifierWatcher(QDBusConnection connection) : connection_(connection) {
        connection_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                   QDBusConnection::ExportAllSlots);
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

    // The host drops an item, as GNOME's extension does when it cannot build its proxy.
    void drop(const QString& id) {
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"),
                                       QStringLiteral("org.kde.StatusNotifierWatcher"),
                                       QStringLiteral("StatusNotifierItemUnregistered"));
        signal << id;
        connection_.send(signal);
    }

    QStringList registered;

public slots:
    void RegisterStatusNotifierItem(const QString& service) { registered.append(service); }

private:
    QDBusConnection connection_;
    bool owns_ = false;
};

} // namespace lumetra::testing

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace lumetra::testing {

// Records the signals one interface sends on a bus, by member name, in order.
class DBusSignalRecorder : public QObject {
    Q_OBJECT

public:
    DBusSignalRecorder(QDBusConnection connection, const QString& path, const QString& interface,
                       const QStringList& members) {
        for (const QString& member : members)
            connection.connect(QString(), path, interface, member, this,
                               SLOT(record(QDBusMessage)));
    }

    QStringList members;
    QList<QVariantList> arguments;

public slots:
    void record(const QDBusMessage& message) {
        members.append(message.member());
        arguments.append(message.arguments());
    }
};

} // namespace lumetra::testing

#pragma once

#include "desktop/PrivateSessionBus.h"
#include "desktop/StatusNotifierItem.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

#include <gtest/gtest.h>

namespace lumetra::testing {

// Records the signals the panel item sends on a bus, by member name, in order.
class DBusSignalRecorder : public QObject {
    Q_OBJECT

public:
    explicit DBusSignalRecorder(QDBusConnection connection) {
        for (const char* member :
             {"NewIcon", "NewToolTip", "NewTitle", "NewStatus", "XAyatanaNewLabel"})
            connection.connect(QString(), StatusNotifierItem::objectPathName(),
                               QStringLiteral("org.kde.StatusNotifierItem"),
                               QString::fromLatin1(member), this, SLOT(record(QDBusMessage)));
    }

    // The signals received since the last call; a NewTitle `item` sends last marks that all
    // before it arrived.
    QStringList drained(StatusNotifierItem& item) {
        static int marker = 0;
        item.setTitle(QStringLiteral("marker %1").arg(++marker));
        EXPECT_TRUE(waitFor([&] { return members.contains(QStringLiteral("NewTitle")); }));
        QStringList result = members;
        result.removeAll(QStringLiteral("NewTitle"));
        members.clear();
        return result;
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

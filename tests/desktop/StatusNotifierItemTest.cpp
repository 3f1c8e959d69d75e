#include "desktop/StatusNotifierItem.h"
#include "desktop/DBusMenu.h"
#include "desktop/DBusSignalRecorder.h"
#include "desktop/FakeStatusNotifierWatcher.h"
#include "desktop/PrivateSessionBus.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace lumetra {
namespace {

using testing::PrivateSessionBus;
using testing::waitFor;

// ---- the pixmap encoding -------------------------------------------------------------

// ARGB in network byte order, marshalled as a list of (width, height, bytes).
TEST(StatusNotifierIconPixmapTest, WritesArgbInNetworkByteOrderAsIIAY) {
    const StatusNotifierIconPixmap pixmap =
        StatusNotifierIconPixmap::fromArgb32(1, 3, QList<quint32>{0xFFFF0000u, 0x01020304u, 0});
    EXPECT_EQ(pixmap.width, 1);
    EXPECT_EQ(pixmap.height, 3);
    EXPECT_EQ(pixmap.data.toHex(' ').toStdString(), "ff ff 00 00 01 02 03 04 00 00 00 00");
    DBusMenu menu; // the item registers the D-Bus types when it is made
    StatusNotifierItem item(QDBusConnection(QString()), menu);
    QDBusArgument argument;
    argument << StatusNotifierIconPixmaps{pixmap};
    EXPECT_EQ(argument.currentSignature().toStdString(), "a(iiay)");
}

// ---- the item on a private bus -------------------------------------------------------

class StatusNotifierItemBus : public ::testing::Test {
protected:
    void SetUp() override {
        if (!bus.available())
            GTEST_SKIP() << "no dbus-daemon to run a private bus";
        itemBus = bus.connect();
        listener = bus.connect();
        ASSERT_TRUE(itemBus.isConnected());
        item = std::make_unique<StatusNotifierItem>(itemBus, menu);
        recorder = std::make_unique<testing::DBusSignalRecorder>(listener);
    }

    QStringList drained() { return recorder->drained(*item); }

    QDBusMessage call(const QString& path, const QString& interface, const QString& member,
                      const QVariantList& arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(item->serviceName(), path, interface, member);
        message.setArguments(arguments);
        QDBusPendingCall pending = listener.asyncCall(message);
        EXPECT_TRUE(waitFor([&] { return pending.isFinished(); }));
        return pending.reply();
    }
    QDBusMessage callItem(const QString& member, const QVariantList& arguments) {
        return call(StatusNotifierItem::objectPathName(), kItem, member, arguments);
    }
    QDBusMessage callMenu(const QString& member, const QVariantList& arguments) {
        return call(StatusNotifierItem::menuPathName(), kMenu, member, arguments);
    }

    const QString kItem = QStringLiteral("org.kde.StatusNotifierItem");
    const QString kMenu = QStringLiteral("com.canonical.dbusmenu");
    PrivateSessionBus bus;
    QDBusConnection itemBus{QString()};
    QDBusConnection listener{QString()};
    DBusMenu menu{PanelMenu{{{1, QStringLiteral("Show Dashboard")},
                             {2, QStringLiteral("Settings…")},
                             {3, QStringLiteral("Quit lumetra")}}}};
    std::unique_ptr<StatusNotifierItem> item;
    std::unique_ptr<testing::DBusSignalRecorder> recorder;
};

TEST_F(StatusNotifierItemBus, SendsOnlyWhatChanged) {
    ASSERT_TRUE(item->start());
    const QString label = QStringLiteral("XAyatanaNewLabel");
    const QString icon = QStringLiteral("NewIcon");
    item->setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
    item->setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
    EXPECT_EQ(drained(), QStringList{label});
    // The signal carries the label and its guide.
    ASSERT_FALSE(recorder->arguments.isEmpty());
    EXPECT_EQ(recorder->arguments.front(),
              (QVariantList{QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%")}));
    // A new figure, then a new guide.
    item->setLabel(QStringLiteral("CPU 15%"), QStringLiteral("CPU 888%"));
    item->setLabel(QStringLiteral("CPU 15%"), QStringLiteral("C 888%"));
    EXPECT_EQ(drained(), (QStringList{label, label}));

    const StatusNotifierIconPixmaps blue{
        StatusNotifierIconPixmap::fromArgb32(1, 1, QList<quint32>{0xFF0A84FFu})};
    const StatusNotifierIconPixmaps red{
        StatusNotifierIconPixmap::fromArgb32(1, 1, QList<quint32>{0xFFFF3B30u})};
    for (const auto& pixmaps : {blue, blue, red, red, blue})
        item->setIconPixmaps(pixmaps);
    EXPECT_EQ(drained(), (QStringList{icon, icon, icon}));

    // The tooltip goes out only when announced, and only when it changed since.
    item->setToolTip(QStringLiteral("lumetra"), QStringLiteral("CPU 1%"));
    item->setToolTip(QStringLiteral("lumetra"), QStringLiteral("CPU 2%"));
    item->announceToolTip();
    item->announceToolTip();
    item->setToolTip(QStringLiteral("lumetra"), QStringLiteral("CPU 2%"));
    item->announceToolTip();
    EXPECT_EQ(drained(), QStringList{QStringLiteral("NewToolTip")});
}

// Properties of the item and of its menu: Get answers, Set is refused.
TEST_F(StatusNotifierItemBus, PropertiesAnswerGetAndRefuseSet) {
    ASSERT_TRUE(item->start());
    item->setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
    const QString unknown = QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty");
    const QString itemPath = StatusNotifierItem::objectPathName();
    const QString menuPath = StatusNotifierItem::menuPathName();
    struct Case {
        QString path, interface, property;
        QVariant value; // invalid: the error `unknown` is expected
    };
    for (const Case& c :
         {Case{itemPath, kItem, "XAyatanaLabel", QStringLiteral("CPU 14%")},
          Case{itemPath, kItem, "XAyatanaLabelGuide", QStringLiteral("CPU 888%")},
          Case{itemPath, kItem, "ItemIsMenu", false},
          Case{itemPath, kItem, "Status", QStringLiteral("Active")},
          Case{itemPath, QString(), "Id", QStringLiteral("lumetra")},
          Case{itemPath, kItem, "IconName", {}}, Case{itemPath, "org.example.Other", "Id", {}},
          Case{menuPath, kMenu, "Version", 3u}, Case{menuPath, kMenu, "Nonsense", {}}}) {
        const QDBusMessage reply = call(c.path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                        QStringLiteral("Get"), {c.interface, c.property});
        if (!c.value.isValid()) {
            EXPECT_EQ(reply.errorName(), unknown) << c.property.toStdString();
            continue;
        }
        ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        EXPECT_EQ(reply.arguments().value(0).value<QDBusVariant>().variant(), c.value)
            << c.property.toStdString();
    }
    const QDBusMessage set = call(
        itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"),
        {kItem, QStringLiteral("Title"), QVariant::fromValue(QDBusVariant(QStringLiteral("x")))});
    EXPECT_EQ(set.errorName().toStdString(), "org.freedesktop.DBus.Error.PropertyReadOnly");
}

TEST_F(StatusNotifierItemBus, ActivateReportsThePoint) {
    ASSERT_TRUE(item->start());
    QSignalSpy activated(item.get(), &StatusNotifierItem::activateRequested);
    QSignalSpy secondary(item.get(), &StatusNotifierItem::secondaryActivateRequested);
    EXPECT_EQ(callItem(QStringLiteral("Activate"), {120, 7}).type(), QDBusMessage::ReplyMessage);
    callItem(QStringLiteral("SecondaryActivate"), {5, 6});
    // A call the item does not have, or with other arguments, is an error and no click.
    for (const auto& [member, arguments] : {std::pair{QStringLiteral("Activate"), QVariantList{1}},
                                            std::pair{QStringLiteral("Provide"), QVariantList{}}})
        EXPECT_EQ(callItem(member, arguments).errorName().toStdString(),
                  "org.freedesktop.DBus.Error.UnknownMethod");
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.front().front().toPoint(), QPoint(120, 7));
    EXPECT_EQ(secondary.count(), 1);
}

// ---- registration with the watcher ---------------------------------------------------

TEST_F(StatusNotifierItemBus, RegistersWithEveryNewWatcherOwner) {
    QSignalSpy present(item.get(), &StatusNotifierItem::watcherPresentChanged);
    ASSERT_TRUE(item->start());
    // No panel yet: the item still answers, for a watcher that comes later.
    EXPECT_EQ(item->state(), StatusNotifierState::noWatcher);
    EXPECT_FALSE(item->isWatcherPresent());
    EXPECT_EQ(present.count(), 0);
    EXPECT_TRUE(itemBus.interface()->isServiceRegistered(item->serviceName()).value());
    // A panel starts, quits, and a restarted one (a new owner of the name) gets the item again.
    for (int panel = 0; panel < 2; ++panel) {
        testing::FakeStatusNotifierWatcher watcher(bus.connect());
        ASSERT_TRUE(watcher.ownsName());
        ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::registered; }));
        EXPECT_TRUE(item->isRegistered());
        EXPECT_TRUE(item->isWatcherPresent());
        EXPECT_EQ(watcher.registered, QStringList{StatusNotifierItem::objectPathName()});
        watcher.quit();
        ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::noWatcher; }));
        EXPECT_FALSE(item->isRegistered());
        EXPECT_FALSE(item->isWatcherPresent());
    }
    StatusNotifierItem offline(QDBusConnection(QString()), menu);
    EXPECT_FALSE(offline.start());
    EXPECT_EQ(offline.state(), StatusNotifierState::noBus);
}

TEST_F(StatusNotifierItemBus, AWatcherThatFoundTheItemIsNotAskedAgain) {
    // GNOME's extension lists items it found on the bus as "name" or ":1.N@/path".
    for (const bool byUniqueName : {false, true}) {
        SCOPED_TRACE(byUniqueName);
        item = std::make_unique<StatusNotifierItem>(itemBus, menu);
        const QString listed = byUniqueName
                                   ? itemBus.baseService() + QStringLiteral("@/StatusNotifierItem")
                                   : item->serviceName();
        testing::FakeStatusNotifierWatcher watcher(bus.connect(), {listed});
        ASSERT_TRUE(item->start());
        ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
        EXPECT_EQ(watcher.registered, QStringList());
        item.reset();
    }
}

TEST_F(StatusNotifierItemBus, AHostDroppingTheItemTenTimesIsAskedTenTimesWithGrowingPauses) {
    item->setRetryDelays(10, 80);
    testing::FakeStatusNotifierWatcher watcher(bus.connect());
    ASSERT_TRUE(item->start());
    ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    // Another item dropped: nothing to do.
    watcher.drop(QStringLiteral("org.kde.StatusNotifierItem-1-1"));
    QList<int> pauses;
    for (int drop = 1; drop <= 10; ++drop) {
        pauses.append(item->nextRetryDelayMs());
        // Named as GNOME names items, or by unique name and path.
        watcher.drop(itemBus.baseService() + (drop % 2 ? QStringLiteral("@/StatusNotifierItem")
                                                       : QStringLiteral("/StatusNotifierItem")));
        ASSERT_TRUE(waitFor([&] { return watcher.registered.size() == drop + 1; }, 3000))
            << "drop " << drop;
        ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    }
    // Doubling from the first pause to the ceiling, and on without a cap on the tries.
    EXPECT_EQ(pauses, (QList<int>{10, 20, 40, 80, 80, 80, 80, 80, 80, 80}));
    waitFor([] { return false; }, 100);
    EXPECT_EQ(watcher.registered.size(), 11);
    EXPECT_EQ(item->state(), StatusNotifierState::registered);
}

TEST_F(StatusNotifierItemBus, ARefusedItemIsTriedAgainAndTakenOnceTheWatcherAgrees) {
    item->setRetryDelays(10, 40);
    testing::FakeStatusNotifierWatcher watcher(bus.connect());
    watcher.refuseWith = QStringLiteral("no room in the tray");
    ASSERT_TRUE(item->start());
    ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::refused; }));
    EXPECT_EQ(item->refusal(), QStringLiteral("no room in the tray"));
    EXPECT_FALSE(item->isRegistered());
    ASSERT_TRUE(waitFor([&] { return watcher.registered.size() >= 3; }));
    EXPECT_EQ(item->state(), StatusNotifierState::refused);
    watcher.refuseWith.clear();
    ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::registered; }));
    const qsizetype tries = watcher.registered.size();
    waitFor([] { return false; }, 150);
    EXPECT_EQ(watcher.registered.size(), tries); // no more once taken
}

TEST_F(StatusNotifierItemBus, NoHostThenAHostRegistersAtOnce) {
    // Long pauses: the host's arrival must not wait for them.
    item->setRetryDelays(60000, 60000);
    testing::FakeStatusNotifierWatcher watcher(bus.connect(), {}, false);
    watcher.refuseWith = QStringLiteral("not now");
    ASSERT_TRUE(item->start());
    ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::noHost; }));
    ASSERT_TRUE(waitFor([&] { return watcher.registered.size() == 1; }));
    watcher.refuseWith.clear();
    watcher.setHost(true);
    ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::registered; }, 2000));
    EXPECT_EQ(watcher.registered.size(), 2);
    // The host quits, leaving the watcher alone: nobody draws the item.
    watcher.setHost(false);
    EXPECT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::noHost; }));
}

// ---- the menu ------------------------------------------------------------------------

struct LayoutNode {
    int id = 0;
    QVariantMap properties;
    QList<LayoutNode> children;
};

LayoutNode readNode(const QDBusArgument& in) {
    LayoutNode node;
    in.beginStructure();
    in >> node.id >> node.properties;
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant child;
        in >> child;
        node.children.append(readNode(child.variant().value<QDBusArgument>()));
    }
    in.endArray();
    in.endStructure();
    return node;
}

TEST_F(StatusNotifierItemBus, MenuHasTheThreeEntriesAndClicksComeBackAsTriggered) {
    ASSERT_TRUE(item->start());
    const QDBusMessage reply = callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList()});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    EXPECT_EQ(reply.signature().toStdString(), "u(ia{sv}av)");
    const LayoutNode root = readNode(reply.arguments().value(1).value<QDBusArgument>());
    EXPECT_EQ(root.properties.value(QStringLiteral("children-display")).toString(),
              QStringLiteral("submenu"));
    QStringList labels;
    for (const LayoutNode& child : root.children)
        labels.append(QString::number(child.id) + u':' +
                      child.properties.value(QStringLiteral("label")).toString());
    EXPECT_EQ(labels.join(u',').toStdString(), "1:Show Dashboard,2:Settings…,3:Quit lumetra");

    // Clicks come back as triggered.
    QSignalSpy triggered(&menu, &DBusMenu::triggered);
    const auto event = [&](int id, const char* type) {
        return callMenu(QStringLiteral("Event"),
                        {id, QString::fromLatin1(type), QVariant::fromValue(QDBusVariant(0)), 0u})
            .type();
    };
    EXPECT_EQ(event(2, "clicked"), QDBusMessage::ReplyMessage);
    // Hover and unknown ids trigger nothing; an unknown id is an error.
    event(3, "hovered");
    EXPECT_EQ(event(9, "clicked"), QDBusMessage::ErrorMessage);
    ASSERT_TRUE(waitFor([&] { return triggered.count() >= 1; }));
    waitFor([] { return false; }, 50);
    ASSERT_EQ(triggered.count(), 1);
    EXPECT_EQ(triggered.front().front().toInt(), 2);
}

} // namespace
} // namespace lumetra

#include "desktop/StatusNotifierItem.h"
#include "desktop/DBusMenu.h"
#include "desktop/DBusSignalRecorder.h"
#include "desktop/FakeStatusNotifierWatcher.h"
#include "desktop/PrivateSessionBus.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <functional>

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

    void startListening() { ASSERT_TRUE(item->start()); }
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
    QDBusMessage getProperty(const QString& interface, const QString& name) {
        return call(StatusNotifierItem::objectPathName(),
                    QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                    {interface, name});
    }

    PrivateSessionBus bus;
    QDBusConnection itemBus{QString()};
    QDBusConnection listener{QString()};
    DBusMenu menu{PanelMenu{{{1, QStringLiteral("Show Dashboard")},
                             {2, QStringLiteral("Settings…")},
                             {3, QStringLiteral("Quit lumetra")}}}};
    std::unique_ptr<StatusNotifierItem> item;
    std::unique_ptr<testing::DBusSignalRecorder> recorder;
};

struct SignalCase {
    std::string name;
    std::function<void(StatusNotifierItem&)> steps;
    QStringList expected;
};

class StatusNotifierItemSignals : public StatusNotifierItemBus,
                                  public ::testing::WithParamInterface<SignalCase> {};

const QString kLabel = QStringLiteral("XAyatanaNewLabel");
const QString kIcon = QStringLiteral("NewIcon");
const StatusNotifierIconPixmaps kIconA{
    StatusNotifierIconPixmap::fromArgb32(1, 1, QList<quint32>{0xFF0A84FFu})};
const StatusNotifierIconPixmaps kIconB{
    StatusNotifierIconPixmap::fromArgb32(1, 1, QList<quint32>{0xFFFF3B30u})};

TEST_P(StatusNotifierItemSignals, SendOnlyWhatChanged) {
    startListening();
    GetParam().steps(*item);
    EXPECT_EQ(drained(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    StatusNotifier, StatusNotifierItemSignals,
    ::testing::Values(
        SignalCase{"SameLabelTwice",
                   [](StatusNotifierItem& item) {
                       item.setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
                       item.setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
                   },
                   {kLabel}},
        SignalCase{"NewFigureThenNewGuide",
                   [](StatusNotifierItem& item) {
                       item.setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
                       item.setLabel(QStringLiteral("CPU 15%"), QStringLiteral("CPU 888%"));
                       item.setLabel(QStringLiteral("CPU 15%"), QStringLiteral("C 888%"));
                   },
                   {kLabel, kLabel, kLabel}},
        SignalCase{"SameImageTwice",
                   [](StatusNotifierItem& item) {
                       item.setIconPixmaps(kIconA);
                       item.setIconPixmaps(kIconA);
                   },
                   {kIcon}},
        SignalCase{"ImageChangedBack",
                   [](StatusNotifierItem& item) {
                       item.setIconPixmaps(kIconA);
                       item.setIconPixmaps(kIconB);
                       item.setIconPixmaps(kIconB);
                       item.setIconPixmaps(kIconA);
                   },
                   {kIcon, kIcon, kIcon}},
        SignalCase{"ToolTipOnlyWhenAnnounced",
                   [](StatusNotifierItem& item) {
                       item.setToolTip(QStringLiteral("lumetra"), QStringLiteral("CPU 1%"));
                       item.setToolTip(QStringLiteral("lumetra"), QStringLiteral("CPU 2%"));
                       item.announceToolTip();
                       item.announceToolTip();
                       item.setToolTip(QStringLiteral("lumetra"), QStringLiteral("CPU 2%"));
                       item.announceToolTip();
                   },
                   {QStringLiteral("NewToolTip")}}),
    [](const auto& info) { return info.param.name; });

TEST_F(StatusNotifierItemBus, LabelSignalCarriesLabelAndGuide) {
    startListening();
    item->setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
    drained();
    ASSERT_FALSE(recorder->arguments.isEmpty());
    EXPECT_EQ(recorder->arguments.front(),
              (QVariantList{QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%")}));
}

struct PropertyCase {
    std::string name;
    QString interface;
    QString property;
    QString errorName; // empty: a value is expected
    QVariant value;
};

class StatusNotifierItemProperties : public StatusNotifierItemBus,
                                     public ::testing::WithParamInterface<PropertyCase> {};

TEST_P(StatusNotifierItemProperties, AnswerGet) {
    ASSERT_TRUE(item->start());
    item->setLabel(QStringLiteral("CPU 14%"), QStringLiteral("CPU 888%"));
    const PropertyCase& c = GetParam();
    const QDBusMessage reply = getProperty(c.interface, c.property);
    if (!c.errorName.isEmpty()) {
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
        EXPECT_EQ(reply.errorName().toStdString(), c.errorName.toStdString());
        return;
    }
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
    EXPECT_EQ(value, c.value);
}

const QString kItem = QStringLiteral("org.kde.StatusNotifierItem");
const QString kUnknown = QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty");

INSTANTIATE_TEST_SUITE_P(
    StatusNotifier, StatusNotifierItemProperties,
    ::testing::Values(
        PropertyCase{
            "Label", kItem, QStringLiteral("XAyatanaLabel"), {}, QStringLiteral("CPU 14%")},
        PropertyCase{
            "Guide", kItem, QStringLiteral("XAyatanaLabelGuide"), {}, QStringLiteral("CPU 888%")},
        PropertyCase{"NotAMenu", kItem, QStringLiteral("ItemIsMenu"), {}, false},
        PropertyCase{"Status", kItem, QStringLiteral("Status"), {}, QStringLiteral("Active")},
        PropertyCase{
            "AnyInterface", QString(), QStringLiteral("Id"), {}, QStringLiteral("lumetra")},
        PropertyCase{"UnknownIconName", kItem, QStringLiteral("IconName"), kUnknown, {}},
        PropertyCase{"OtherInterface",
                     QStringLiteral("org.example.Other"),
                     QStringLiteral("Id"),
                     kUnknown,
                     {}}),
    [](const auto& info) { return info.param.name; });

TEST_F(StatusNotifierItemBus, SetIsRefused) {
    ASSERT_TRUE(item->start());
    const QDBusMessage reply = call(
        StatusNotifierItem::objectPathName(), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Set"),
        {kItem, QStringLiteral("Title"), QVariant::fromValue(QDBusVariant(QStringLiteral("x")))});
    EXPECT_EQ(reply.errorName().toStdString(), "org.freedesktop.DBus.Error.PropertyReadOnly");
}

TEST_F(StatusNotifierItemBus, ActivateReportsThePoint) {
    ASSERT_TRUE(item->start());
    QSignalSpy activated(item.get(), &StatusNotifierItem::activateRequested);
    QSignalSpy secondary(item.get(), &StatusNotifierItem::secondaryActivateRequested);
    const QDBusMessage reply =
        call(StatusNotifierItem::objectPathName(), kItem, QStringLiteral("Activate"), {120, 7});
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage);
    call(StatusNotifierItem::objectPathName(), kItem, QStringLiteral("SecondaryActivate"), {5, 6});
    // A call the item does not have, or with other arguments, is an error and no click.
    EXPECT_EQ(call(StatusNotifierItem::objectPathName(), kItem, QStringLiteral("Activate"), {1})
                  .errorName()
                  .toStdString(),
              "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(call(StatusNotifierItem::objectPathName(), kItem, QStringLiteral("Provide"), {})
                  .errorName()
                  .toStdString(),
              "org.freedesktop.DBus.Error.UnknownMethod");
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.front().front().toPoint(), QPoint(120, 7));
    EXPECT_EQ(secondary.count(), 1);
}

// ---- registration with the watcher ---------------------------------------------------

TEST_F(StatusNotifierItemBus, RegistersWithEveryNewWatcherOwner) {
    // The panel runs before lumetra starts.
    testing::FakeStatusNotifierWatcher first(bus.connect());
    ASSERT_TRUE(first.ownsName());
    ASSERT_TRUE(item->start());
    ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    EXPECT_EQ(first.registered, QStringList{StatusNotifierItem::objectPathName()});
    EXPECT_TRUE(item->isWatcherPresent());

    // The panel quits: no watcher.
    first.quit();
    ASSERT_TRUE(waitFor([&] { return !item->isWatcherPresent(); }));
    EXPECT_FALSE(item->isRegistered());

    // A restarted panel: a new owner of the name gets the item again, once.
    testing::FakeStatusNotifierWatcher second(bus.connect());
    ASSERT_TRUE(second.ownsName());
    ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    EXPECT_EQ(second.registered, QStringList{StatusNotifierItem::objectPathName()});
    EXPECT_EQ(first.registered.size(), 1);
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

TEST_F(StatusNotifierItemBus, RegistersAgainWhenTheHostDropsIt) {
    testing::FakeStatusNotifierWatcher watcher(bus.connect());
    ASSERT_TRUE(item->start());
    ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    // Another item dropped: nothing to do.
    watcher.drop(QStringLiteral("org.kde.StatusNotifierItem-1-1"));
    // This one, named as GNOME names items: asked again after a pause.
    watcher.drop(itemBus.baseService() + QStringLiteral("@/StatusNotifierItem"));
    ASSERT_TRUE(waitFor([&] { return watcher.registered.size() == 2; }, 3000));
    EXPECT_TRUE(waitFor([&] { return item->isRegistered(); }));
    waitFor([] { return false; }, 100);
    EXPECT_EQ(watcher.registered.size(), 2);
}

TEST_F(StatusNotifierItemBus, AHostDroppingTheItemTenTimesIsAskedTenTimesWithGrowingPauses) {
    item->setRetryDelays(10, 80);
    testing::FakeStatusNotifierWatcher watcher(bus.connect());
    ASSERT_TRUE(item->start());
    ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    QList<int> pauses;
    for (int drop = 1; drop <= 10; ++drop) {
        pauses.append(item->nextRetryDelayMs());
        watcher.drop(itemBus.baseService() + QStringLiteral("/StatusNotifierItem"));
        ASSERT_TRUE(waitFor([&] { return watcher.registered.size() == drop + 1; }, 3000))
            << "drop " << drop;
        ASSERT_TRUE(waitFor([&] { return item->isRegistered(); }));
    }
    // Doubling from the first pause to the ceiling, and on without a cap on the tries.
    EXPECT_EQ(pauses, (QList<int>{10, 20, 40, 80, 80, 80, 80, 80, 80, 80}));
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

TEST_F(StatusNotifierItemBus, StateFollowsTheWatcher) {
    ASSERT_TRUE(item->start());
    EXPECT_EQ(item->state(), StatusNotifierState::noWatcher);
    {
        testing::FakeStatusNotifierWatcher watcher(bus.connect());
        ASSERT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::registered; }));
    }
    EXPECT_TRUE(waitFor([&] { return item->state() == StatusNotifierState::noWatcher; }));
    StatusNotifierItem offline(QDBusConnection(QString()), menu);
    EXPECT_FALSE(offline.start());
    EXPECT_EQ(offline.state(), StatusNotifierState::noBus);
}

TEST_F(StatusNotifierItemBus, StartsWithoutWatcher) {
    QSignalSpy present(item.get(), &StatusNotifierItem::watcherPresentChanged);
    ASSERT_TRUE(item->start());
    EXPECT_FALSE(item->isWatcherPresent());
    EXPECT_FALSE(item->isRegistered());
    EXPECT_EQ(present.count(), 0);
    // The item still answers, for a watcher that comes later.
    EXPECT_TRUE(itemBus.interface()->isServiceRegistered(item->serviceName()).value());
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

TEST_F(StatusNotifierItemBus, MenuLayoutHasTheThreeEntries) {
    ASSERT_TRUE(item->start());
    const QDBusMessage reply =
        call(StatusNotifierItem::menuPathName(), QStringLiteral("com.canonical.dbusmenu"),
             QStringLiteral("GetLayout"), {0, -1, QStringList()});
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
}

TEST_F(StatusNotifierItemBus, MenuClicksComeBackAsTriggered) {
    ASSERT_TRUE(item->start());
    QSignalSpy triggered(&menu, &DBusMenu::triggered);
    const QString dbusmenu = QStringLiteral("com.canonical.dbusmenu");
    const QVariant noData = QVariant::fromValue(QDBusVariant(0));
    EXPECT_EQ(call(StatusNotifierItem::menuPathName(), dbusmenu, QStringLiteral("Event"),
                   {2, QStringLiteral("clicked"), noData, 0u})
                  .type(),
              QDBusMessage::ReplyMessage);
    // Hover and unknown ids trigger nothing; an unknown id is an error.
    call(StatusNotifierItem::menuPathName(), dbusmenu, QStringLiteral("Event"),
         {3, QStringLiteral("hovered"), noData, 0u});
    EXPECT_EQ(call(StatusNotifierItem::menuPathName(), dbusmenu, QStringLiteral("Event"),
                   {9, QStringLiteral("clicked"), noData, 0u})
                  .type(),
              QDBusMessage::ErrorMessage);
    ASSERT_TRUE(waitFor([&] { return triggered.count() >= 1; }));
    waitFor([] { return false; }, 50);
    ASSERT_EQ(triggered.count(), 1);
    EXPECT_EQ(triggered.front().front().toInt(), 2);
}

TEST_F(StatusNotifierItemBus, UnknownMenuPropertyIsUnknownProperty) {
    ASSERT_TRUE(item->start());
    const QDBusMessage reply =
        call(StatusNotifierItem::menuPathName(), QStringLiteral("org.freedesktop.DBus.Properties"),
             QStringLiteral("Get"),
             {QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("Nonsense")});
    EXPECT_EQ(reply.errorName(), kUnknown);
    const QDBusMessage version =
        call(StatusNotifierItem::menuPathName(), QStringLiteral("org.freedesktop.DBus.Properties"),
             QStringLiteral("Get"),
             {QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("Version")});
    EXPECT_EQ(version.arguments().value(0).value<QDBusVariant>().variant().toUInt(), 3u);
}

} // namespace
} // namespace lumetra

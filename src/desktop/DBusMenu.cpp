#include "desktop/DBusMenu.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QTimer>

namespace lumetra {

namespace {

// (ia{sv}): one entry's properties, as GetGroupProperties answers them.
struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

} // namespace

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::DBusMenuItemProperties)

namespace lumetra {

namespace {

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuItemProperties& item) {
    out.beginStructure();
    out << item.id << item.properties;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuItemProperties& item) {
    in.beginStructure();
    in >> item.id >> item.properties;
    in.endStructure();
    return in;
}

const char* const kIntrospection =
    "<property name=\"Version\" type=\"u\" access=\"read\"/>\n"
    "<property name=\"TextDirection\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"Status\" type=\"s\" access=\"read\"/>\n"
    "<property name=\"IconThemePath\" type=\"as\" access=\"read\"/>\n"
    "<method name=\"GetLayout\"><arg type=\"i\" name=\"parentId\" direction=\"in\"/>"
    "<arg type=\"i\" name=\"recursionDepth\" direction=\"in\"/>"
    "<arg type=\"as\" name=\"propertyNames\" direction=\"in\"/>"
    "<arg type=\"u\" name=\"revision\" direction=\"out\"/>"
    "<arg type=\"(ia{sv}av)\" name=\"layout\" direction=\"out\"/></method>\n"
    "<method name=\"GetGroupProperties\"><arg type=\"ai\" name=\"ids\" direction=\"in\"/>"
    "<arg type=\"as\" name=\"propertyNames\" direction=\"in\"/>"
    "<arg type=\"a(ia{sv})\" name=\"properties\" direction=\"out\"/></method>\n"
    "<method name=\"GetProperty\"><arg type=\"i\" name=\"id\" direction=\"in\"/>"
    "<arg type=\"s\" name=\"name\" direction=\"in\"/>"
    "<arg type=\"v\" name=\"value\" direction=\"out\"/></method>\n"
    "<method name=\"Event\"><arg type=\"i\" name=\"id\" direction=\"in\"/>"
    "<arg type=\"s\" name=\"eventId\" direction=\"in\"/>"
    "<arg type=\"v\" name=\"data\" direction=\"in\"/>"
    "<arg type=\"u\" name=\"timestamp\" direction=\"in\"/></method>\n"
    "<method name=\"EventGroup\"><arg type=\"a(isvu)\" name=\"events\" direction=\"in\"/>"
    "<arg type=\"ai\" name=\"idErrors\" direction=\"out\"/></method>\n"
    "<method name=\"AboutToShow\"><arg type=\"i\" name=\"id\" direction=\"in\"/>"
    "<arg type=\"b\" name=\"needUpdate\" direction=\"out\"/></method>\n"
    "<method name=\"AboutToShowGroup\"><arg type=\"ai\" name=\"ids\" direction=\"in\"/>"
    "<arg type=\"ai\" name=\"updatesNeeded\" direction=\"out\"/>"
    "<arg type=\"ai\" name=\"idErrors\" direction=\"out\"/></method>\n"
    "<signal name=\"ItemsPropertiesUpdated\"><arg type=\"a(ia{sv})\" name=\"updatedProps\"/>"
    "<arg type=\"a(ias)\" name=\"removedProps\"/></signal>\n"
    "<signal name=\"LayoutUpdated\"><arg type=\"u\" name=\"revision\"/>"
    "<arg type=\"i\" name=\"parent\"/></signal>\n"
    "<signal name=\"ItemActivationRequested\"><arg type=\"i\" name=\"id\"/>"
    "<arg type=\"u\" name=\"timestamp\"/></signal>\n";

// dbusmenu labels mark the mnemonic with "_"; a literal one is doubled.
QString escapedLabel(const QString& label) {
    QString escaped = label;
    return escaped.replace(u'_', QStringLiteral("__"));
}

QList<int> intList(const QVariant& value) {
    return qdbus_cast<QList<int>>(value);
}

// (ia{sv}av) of one node: an entry without children, or the root with the entries.
void writeNode(QDBusArgument& out, int id, const QVariantMap& properties,
               const QList<QVariantMap>& children, const QList<int>& childIds) {
    out.beginStructure();
    out << id << properties;
    out.beginArray(QMetaType::fromType<QDBusVariant>());
    for (qsizetype i = 0; i < children.size(); ++i) {
        QDBusArgument child;
        child.beginStructure();
        child << childIds[i] << children[i];
        child.beginArray(QMetaType::fromType<QDBusVariant>());
        child.endArray();
        child.endStructure();
        out << QDBusVariant(QVariant::fromValue(child));
    }
    out.endArray();
    out.endStructure();
}

} // namespace

DBusMenu::DBusMenu(PanelMenu menu, QObject* parent)
    : StatusNotifierDBusObject(QStringLiteral("com.canonical.dbusmenu"),
                               QString::fromLatin1(kIntrospection), parent),
      menu_(std::move(menu)) {
    static const bool registered = [] {
        qDBusRegisterMetaType<DBusMenuItemProperties>();
        qDBusRegisterMetaType<QList<DBusMenuItemProperties>>();
        return true;
    }();
    (void)registered;
}

QVariantMap DBusMenu::properties() const {
    return {
        {QStringLiteral("Version"), 3u},
        {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
        {QStringLiteral("Status"), QStringLiteral("normal")},
        {QStringLiteral("IconThemePath"), QStringList()},
    };
}

QVariantMap DBusMenu::itemProperties(int id, const QStringList& names) const {
    QVariantMap properties;
    if (id == 0) {
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    } else if (const PanelMenuEntry* found = menu_.find(id)) {
        properties.insert(QStringLiteral("label"), escapedLabel(found->label));
        properties.insert(QStringLiteral("enabled"), true);
        properties.insert(QStringLiteral("visible"), true);
    }
    if (names.isEmpty())
        return properties;
    QVariantMap chosen;
    for (const QString& name : names)
        if (properties.contains(name))
            chosen.insert(name, properties.value(name));
    return chosen;
}

void DBusMenu::click(int id, const QString& eventId) {
    if (eventId != QLatin1String("clicked") || !menu_.find(id))
        return;
    // After the reply, so the host is not kept waiting by what the click opens.
    QTimer::singleShot(0, this, [this, id] { emit triggered(id); });
}

bool DBusMenu::handleMethod(const QDBusMessage& message, const QDBusConnection& connection) {
    const QString member = message.member();
    const QString signature = message.signature();
    const QVariantList arguments = message.arguments();
    const auto unknownId = [&](int id) {
        connection.send(
            message.createErrorReply(QStringLiteral("com.canonical.dbusmenu.Error.UnknownId"),
                                     QStringLiteral("No menu item with id %1").arg(id)));
        return true;
    };

    if (member == QLatin1String("GetLayout") && signature == QLatin1String("iias")) {
        const int parentId = arguments.value(0).toInt();
        const int depth = arguments.value(1).toInt();
        const QStringList names = arguments.value(2).toStringList();
        if (parentId != 0 && !menu_.find(parentId))
            return unknownId(parentId);
        QList<QVariantMap> children;
        QList<int> childIds;
        if (parentId == 0 && depth != 0) {
            for (const PanelMenuEntry& child : menu_.entries) {
                children.append(itemProperties(child.id, names));
                childIds.append(child.id);
            }
        }
        QDBusArgument layout;
        writeNode(layout, parentId, itemProperties(parentId, names), children, childIds);
        connection.send(message.createReply({kRevision, QVariant::fromValue(layout)}));
        return true;
    }
    if (member == QLatin1String("GetGroupProperties") && signature == QLatin1String("aias")) {
        QList<int> ids = intList(arguments.value(0));
        const QStringList names = arguments.value(1).toStringList();
        if (ids.isEmpty()) {
            ids.append(0);
            for (const PanelMenuEntry& each : menu_.entries)
                ids.append(each.id);
        }
        QList<DBusMenuItemProperties> items;
        for (const int id : ids)
            if (id == 0 || menu_.find(id))
                items.append({id, itemProperties(id, names)});
        connection.send(message.createReply(QVariant::fromValue(items)));
        return true;
    }
    if (member == QLatin1String("GetProperty") && signature == QLatin1String("is")) {
        const int id = arguments.value(0).toInt();
        const QVariantMap properties = itemProperties(id, {});
        const QString name = arguments.value(1).toString();
        if ((id != 0 && !menu_.find(id)) || !properties.contains(name))
            return unknownId(id);
        connection.send(
            message.createReply(QVariant::fromValue(QDBusVariant(properties.value(name)))));
        return true;
    }
    if (member == QLatin1String("Event") && signature == QLatin1String("isvu")) {
        const int id = arguments.value(0).toInt();
        if (id != 0 && !menu_.find(id))
            return unknownId(id);
        connection.send(message.createReply());
        click(id, arguments.value(1).toString());
        return true;
    }
    if (member == QLatin1String("EventGroup") && signature == QLatin1String("a(isvu)")) {
        QList<int> idErrors;
        QList<std::pair<int, QString>> clicks;
        const QDBusArgument events = arguments.value(0).value<QDBusArgument>();
        events.beginArray();
        while (!events.atEnd()) {
            int id = 0;
            QString eventId;
            QDBusVariant data;
            uint timestamp = 0;
            events.beginStructure();
            events >> id >> eventId >> data >> timestamp;
            events.endStructure();
            if (id != 0 && !menu_.find(id))
                idErrors.append(id);
            else
                clicks.append({id, eventId});
        }
        events.endArray();
        connection.send(message.createReply(QVariant::fromValue(idErrors)));
        for (const auto& [id, eventId] : clicks)
            click(id, eventId);
        return true;
    }
    if (member == QLatin1String("AboutToShow") && signature == QLatin1String("i")) {
        const int id = arguments.value(0).toInt();
        if (id != 0 && !menu_.find(id))
            return unknownId(id);
        // The entries never change while the menu is open.
        connection.send(message.createReply(false));
        return true;
    }
    if (member == QLatin1String("AboutToShowGroup") && signature == QLatin1String("ai")) {
        QList<int> idErrors;
        for (const int id : intList(arguments.value(0)))
            if (id != 0 && !menu_.find(id))
                idErrors.append(id);
        connection.send(message.createReply(
            {QVariant::fromValue(QList<int>()), QVariant::fromValue(idErrors)}));
        return true;
    }
    return false;
}

} // namespace lumetra

#include "desktop/StatusNotifierDBusObject.h"

#include <QDBusMessage>
#include <QDBusVariant>

namespace lumetra {

namespace {

const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kIntrospectableInterface = QStringLiteral("org.freedesktop.DBus.Introspectable");

} // namespace

StatusNotifierDBusObject::StatusNotifierDBusObject(QString interfaceName, QString introspectionBody,
                                                   QObject* parent)
    : QDBusVirtualObject(parent), interface_(std::move(interfaceName)),
      introspection_(std::move(introspectionBody)) {}

StatusNotifierDBusObject::~StatusNotifierDBusObject() {
    unexport();
}

bool StatusNotifierDBusObject::exportOn(const QDBusConnection& bus, const QString& path) {
    unexport();
    bus_ = bus;
    path_ = path;
    exported_ = bus_.registerVirtualObject(path, this, QDBusConnection::SingleNode);
    return exported_;
}

void StatusNotifierDBusObject::unexport() {
    if (!exported_)
        return;
    bus_.unregisterObject(path_);
    exported_ = false;
}

QString StatusNotifierDBusObject::introspect(const QString&) const {
    // Qt adds the Introspectable and Peer interfaces itself; Properties is ours.
    return QStringLiteral("<interface name=\"%1\">\n%2</interface>\n"
                          "<interface name=\"org.freedesktop.DBus.Properties\">\n"
                          "<method name=\"Get\"><arg name=\"interface_name\" type=\"s\" "
                          "direction=\"in\"/><arg name=\"property_name\" type=\"s\" "
                          "direction=\"in\"/><arg name=\"value\" type=\"v\" "
                          "direction=\"out\"/></method>\n"
                          "<method name=\"GetAll\"><arg name=\"interface_name\" type=\"s\" "
                          "direction=\"in\"/><arg name=\"properties\" type=\"a{sv}\" "
                          "direction=\"out\"/></method>\n"
                          "<method name=\"Set\"><arg name=\"interface_name\" type=\"s\" "
                          "direction=\"in\"/><arg name=\"property_name\" type=\"s\" "
                          "direction=\"in\"/><arg name=\"value\" type=\"v\" "
                          "direction=\"in\"/></method>\n"
                          "<signal name=\"PropertiesChanged\"><arg type=\"s\"/><arg "
                          "type=\"a{sv}\"/><arg type=\"as\"/></signal>\n"
                          "</interface>\n")
        .arg(interface_, introspection_);
}

bool StatusNotifierDBusObject::handleMessage(const QDBusMessage& message,
                                             const QDBusConnection& connection) {
    if (message.type() != QDBusMessage::MethodCallMessage)
        return false;
    if (message.interface() == kPropertiesInterface)
        return handleProperties(message, connection);
    if (message.interface() == kIntrospectableInterface) {
        connection.send(message.createReply(
            QStringLiteral("<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object "
                           "Introspection 1.0//EN\"\n"
                           "\"http://www.freedesktop.org/standards/dbus/1.0/"
                           "introspect.dtd\">\n<node>\n") +
            introspect(message.path()) + QStringLiteral("</node>\n")));
        return true;
    }
    if (!message.interface().isEmpty() && message.interface() != interface_)
        return false;
    if (handleMethod(message, connection))
        return true;
    connection.send(message.createErrorReply(
        QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"),
        QStringLiteral("No method \"%1\" with signature \"%2\" in interface \"%3\"")
            .arg(message.member(), message.signature(), interface_)));
    return true;
}

bool StatusNotifierDBusObject::handleProperties(const QDBusMessage& message,
                                                const QDBusConnection& connection) {
    const QVariantList arguments = message.arguments();
    const QString member = message.member();
    const QString interface = arguments.value(0).toString();
    // An empty interface name means "whichever has it"; we have one.
    const bool ours = interface.isEmpty() || interface == interface_;
    if (member == QLatin1String("GetAll") && message.signature() == QLatin1String("s")) {
        connection.send(message.createReply(ours ? properties() : QVariantMap()));
        return true;
    }
    if (member == QLatin1String("Get") && message.signature() == QLatin1String("ss")) {
        const QString name = arguments.value(1).toString();
        const QVariantMap values = ours ? properties() : QVariantMap();
        const auto found = values.constFind(name);
        if (found == values.constEnd()) {
            connection.send(message.createErrorReply(
                QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty"),
                QStringLiteral("No such property \"%1\" in interface \"%2\"")
                    .arg(name, interface)));
            return true;
        }
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(*found))));
        return true;
    }
    if (member == QLatin1String("Set") && message.signature() == QLatin1String("ssv")) {
        const QString name = arguments.value(1).toString();
        const bool known = ours && properties().contains(name);
        connection.send(message.createErrorReply(
            known ? QStringLiteral("org.freedesktop.DBus.Error.PropertyReadOnly")
                  : QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty"),
            QStringLiteral("Property \"%1\" cannot be set").arg(name)));
        return true;
    }
    return false;
}

void StatusNotifierDBusObject::emitSignal(const QString& name, const QVariantList& arguments) {
    if (!exported_)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(path_, interface_, name);
    signal.setArguments(arguments);
    bus_.send(signal);
}

} // namespace lumetra

#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariantMap>

namespace lumetra {

// Base of the objects the panel item exports (the item and its menu): one D-Bus interface
// whose properties are answered here, org.freedesktop.DBus.Properties included, so that a
// property the interface does not have gets org.freedesktop.DBus.Error.UnknownProperty —
// some hosts ask for optional ones and only handle that error. Qt's own property handling
// cannot answer it, hence a virtual object.
class StatusNotifierDBusObject : public QDBusVirtualObject {
    Q_OBJECT

public:
    ~StatusNotifierDBusObject() override;

    // Exports the object at `path` on `bus`; false when the path is taken.
    bool exportOn(const QDBusConnection& bus, const QString& path);
    void unexport();
    const QString& path() const { return path_; }
    const QString& interfaceName() const { return interface_; }

    QString introspect(const QString& path) const final;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) final;

protected:
    // `introspectionBody`: the <method>, <signal> and <property> elements of the interface.
    StatusNotifierDBusObject(QString interfaceName, QString introspectionBody,
                             QObject* parent = nullptr);

    // Every property of the interface with its current value.
    virtual QVariantMap properties() const = 0;
    // A call of the interface's own methods; false when there is no such method.
    virtual bool handleMethod(const QDBusMessage& message, const QDBusConnection& connection) = 0;

    // Sends a signal of the interface from this object; nothing when not exported.
    void emitSignal(const QString& name, const QVariantList& arguments = {});

private:
    bool handleProperties(const QDBusMessage& message, const QDBusConnection& connection);

    QString interface_;
    QString introspection_;
    QDBusConnection bus_{QString()};
    QString path_;
    bool exported_ = false;
};

} // namespace lumetra

#include "desktop/PortalSettings.h"

#include "model/Logging.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace lumetra::PortalSettings {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
constexpr int kReadTimeoutMs = 5000;

} // namespace

void watch(QDBusConnection bus, QObject* receiver, const char* slot) {
    if (!bus.isConnected())
        return;
    // QtDBus matches the slot's QDBusVariant argument by its registered type: unregistered, the
    // connection is refused and every later change of the desktop's settings would be missed.
    qRegisterMetaType<QDBusVariant>();
    if (!bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), receiver, slot))
        qCWarning(logUi).noquote()
            << "Cannot follow the desktop portal's setting changes:" << bus.lastError().message();
}

void read(QDBusConnection bus, QObject* context, const QString& group, const QString& key,
          std::function<void(const QVariant&)> apply) {
    if (!bus.isConnected())
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    call << group << key;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, kReadTimeoutMs), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [watcher, group, key, apply = std::move(apply)] {
                         watcher->deleteLater();
                         const QDBusMessage reply = watcher->reply();
                         if (reply.type() != QDBusMessage::ReplyMessage ||
                             reply.arguments().isEmpty()) {
                             qCDebug(logUi).noquote() << "portal setting" << group + u'.' + key
                                                      << "not readable:" << reply.errorMessage();
                             return;
                         }
                         apply(reply.arguments().constFirst());
                     });
}

QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace lumetra::PortalSettings

#include "desktop/SingleInstance.h"

#include "model/AppId.h"
#include "model/Logging.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QThread>

namespace lumetra {

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

SingleInstance::~SingleInstance() {
    if (registered_) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterService(serviceName());
        bus.unregisterObject(objectPath());
    }
}

QString SingleInstance::serviceName() {
    return QString::fromLatin1(kAppId);
}

QString SingleInstance::objectPath() {
    return u'/' + QString::fromLatin1(kAppId).replace(u'.', u'/');
}

SingleInstance::Outcome SingleInstance::claimOrForward(const QString& request) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Outcome::noBus;
    // The object first, so a second start that sees the name can always call it.
    bus.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    // Two starts racing: the bus gives the name to exactly one; the other forwards. An owner
    // that is just quitting may not answer; then try once more for the name.
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (bus.registerService(serviceName())) {
            registered_ = true;
            return Outcome::primary;
        }
        QDBusMessage call = QDBusMessage::createMethodCall(
            serviceName(), objectPath(), QStringLiteral("io.lumetra.Lumetra.Application"),
            QStringLiteral("Activate"));
        call << request;
        const QDBusMessage reply = bus.call(call, QDBus::Block, 2000);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            bus.unregisterObject(objectPath());
            return Outcome::forwarded;
        }
        qCWarning(logUi).noquote() << "the running lumetra did not answer:" << reply.errorMessage();
        QThread::msleep(200);
    }
    bus.unregisterObject(objectPath());
    return Outcome::failed;
}

void SingleInstance::Activate(const QString& what) {
    emit activationRequested(what);
}

} // namespace lumetra

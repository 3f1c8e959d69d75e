#include "desktop/DesktopAccessibility.h"

#include "model/Logging.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace lumetra {

namespace {

const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString kContrastKey = QStringLiteral("contrast");
const QString kGnomeA11yGroup = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString kHighContrastKey = QStringLiteral("high-contrast");

// Older portals wrap the value in one more variant.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopAccessibility::DesktopAccessibility(QObject* parent) : QObject(parent) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(kPortalService, kPortalPath, kSettingsInterface, QStringLiteral("SettingChanged"),
                this, SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    readAll();
}

bool DesktopAccessibility::contrastIsHigh(const QVariant& appearanceContrast) {
    // 0: no preference, 1: higher contrast.
    bool ok = false;
    const uint value = unwrapped(appearanceContrast).toUInt(&ok);
    return ok && value == 1;
}

void DesktopAccessibility::readAll() {
    read(kAppearanceGroup, kContrastKey);
    read(kGnomeA11yGroup, kHighContrastKey);
}

void DesktopAccessibility::read(const QString& group, const QString& key) {
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath,
                                                       kSettingsInterface, QStringLiteral("Read"));
    call << group << key;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, 5000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        // No portal, or a desktop without this key: it stays off, quietly.
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
            qCDebug(logUi).noquote() << "portal setting" << group + u'.' + key
                                     << "not readable:" << reply.errorMessage();
            return;
        }
        apply(group, key, reply.arguments().constFirst());
    });
}

void DesktopAccessibility::onSettingChanged(const QString& group, const QString& key,
                                            const QDBusVariant& value) {
    apply(group, key, value.variant());
}

void DesktopAccessibility::apply(const QString& group, const QString& key, const QVariant& value) {
    if (group == kAppearanceGroup && key == kContrastKey)
        portalHighContrast_ = contrastIsHigh(value);
    else if (group == kGnomeA11yGroup && key == kHighContrastKey)
        gnomeHighContrast_ = unwrapped(value).toBool();
    else
        return;
    // No Linux desktop publishes a reduce-transparency preference yet, so that flag stays off.
    update(false, portalHighContrast_ || gnomeHighContrast_);
}

void DesktopAccessibility::update(bool reduceTransparency, bool increaseContrast) {
    if (reduceTransparency == reduceTransparency_ && increaseContrast == increaseContrast_)
        return;
    reduceTransparency_ = reduceTransparency;
    increaseContrast_ = increaseContrast;
    emit changed();
}

} // namespace lumetra

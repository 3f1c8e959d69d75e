#include "appearance/DesktopColorScheme.h"

#include "model/Logging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace lumetra {

namespace {

const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString kColorSchemeKey = QStringLiteral("color-scheme");

} // namespace

DesktopColorScheme::DesktopColorScheme(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    if (!bus_.isConnected())
        return;
    bus_.connect(kPortalService, kPortalPath, kSettingsInterface, QStringLiteral("SettingChanged"),
                 this, SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath,
                                                       kSettingsInterface, QStringLiteral("Read"));
    call << kAppearanceGroup << kColorSchemeKey;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 5000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        // No portal, or one too old for the key: no preference, quietly.
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
            qCDebug(logUi).noquote() << "portal color-scheme not readable:" << reply.errorMessage();
            return;
        }
        set(interpret(reply.arguments().constFirst()));
    });
}

DesktopColorScheme::Preference DesktopColorScheme::interpret(const QVariant& value) {
    // Older portals wrap the value in one more variant.
    QVariant plain = value;
    while (plain.userType() == qMetaTypeId<QDBusVariant>())
        plain = plain.value<QDBusVariant>().variant();
    bool ok = false;
    const uint scheme = plain.toUInt(&ok);
    if (!ok)
        return Preference::none;
    switch (scheme) {
    case 1:
        return Preference::dark;
    case 2:
        return Preference::light;
    default:
        return Preference::none;
    }
}

bool DesktopColorScheme::isDark(Preference preference, bool paletteIsDark) {
    switch (preference) {
    case Preference::dark:
        return true;
    case Preference::light:
        return false;
    case Preference::none:
        break;
    }
    return paletteIsDark;
}

void DesktopColorScheme::onSettingChanged(const QString& group, const QString& key,
                                          const QDBusVariant& value) {
    if (group == kAppearanceGroup && key == kColorSchemeKey)
        set(interpret(value.variant()));
}

void DesktopColorScheme::set(Preference preference) {
    if (preference_ == preference)
        return;
    preference_ = preference;
    emit preferenceChanged();
}

} // namespace lumetra

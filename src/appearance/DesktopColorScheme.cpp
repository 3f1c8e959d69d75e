#include "appearance/DesktopColorScheme.h"

#include "desktop/PortalSettings.h"

#include <QDBusVariant>

namespace lumetra {

namespace {

const QString kAppearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString kColorSchemeKey = QStringLiteral("color-scheme");

} // namespace

DesktopColorScheme::DesktopColorScheme(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    PortalSettings::watch(bus_, this, SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    PortalSettings::read(bus_, this, kAppearanceGroup, kColorSchemeKey,
                         [this](const QVariant& value) { set(interpret(value)); });
}

DesktopColorScheme::Preference DesktopColorScheme::interpret(const QVariant& value) {
    bool ok = false;
    const uint scheme = PortalSettings::unwrapped(value).toUInt(&ok);
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

#include "desktop/DesktopAccessibility.h"

#include "desktop/PortalSettings.h"

#include <QDBusConnection>
#include <QDBusVariant>

namespace lumetra {

namespace {

const QString kAppearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString kContrastKey = QStringLiteral("contrast");
const QString kGnomeA11yGroup = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString kHighContrastKey = QStringLiteral("high-contrast");

} // namespace

DesktopAccessibility::DesktopAccessibility(QObject* parent) : QObject(parent) {
    PortalSettings::watch(QDBusConnection::sessionBus(), this,
                          SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    readAll();
}

bool DesktopAccessibility::contrastIsHigh(const QVariant& appearanceContrast) {
    // 0: no preference, 1: higher contrast.
    bool ok = false;
    const uint value = PortalSettings::unwrapped(appearanceContrast).toUInt(&ok);
    return ok && value == 1;
}

void DesktopAccessibility::readAll() {
    read(kAppearanceGroup, kContrastKey);
    read(kGnomeA11yGroup, kHighContrastKey);
}

void DesktopAccessibility::read(const QString& group, const QString& key) {
    PortalSettings::read(QDBusConnection::sessionBus(), this, group, key,
                         [this, group, key](const QVariant& value) { apply(group, key, value); });
}

void DesktopAccessibility::onSettingChanged(const QString& group, const QString& key,
                                            const QDBusVariant& value) {
    apply(group, key, value.variant());
}

void DesktopAccessibility::apply(const QString& group, const QString& key, const QVariant& value) {
    if (group == kAppearanceGroup && key == kContrastKey)
        portalHighContrast_ = contrastIsHigh(value);
    else if (group == kGnomeA11yGroup && key == kHighContrastKey)
        gnomeHighContrast_ = PortalSettings::unwrapped(value).toBool();
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

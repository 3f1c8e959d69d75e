#pragma once

#include <QDBusConnection>
#include <QString>
#include <QVariant>

#include <functional>

class QObject;

namespace lumetra {

// The XDG desktop portal's Settings interface, as the appearance and accessibility readers
// share it.
namespace PortalSettings {

// Connects `receiver`'s `slot`, taking (QString group, QString key, QDBusVariant value), to
// the portal's SettingChanged signal.
void watch(QDBusConnection bus, QObject* receiver, const char* slot);

// Reads group.key without blocking and hands the value to `apply` (in `context`'s thread,
// not after `context` is gone). No portal, or one without the key: nothing is applied, and
// a debug line says so.
void read(QDBusConnection bus, QObject* context, const QString& group, const QString& key,
          std::function<void(const QVariant&)> apply);

// The value itself: older portals wrap it in one more variant.
QVariant unwrapped(QVariant value);

} // namespace PortalSettings

} // namespace lumetra

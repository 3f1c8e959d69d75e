#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace lumetra {

// The desktop's light or dark preference, from the XDG desktop portal's
// org.freedesktop.appearance color-scheme setting (GNOME's and KDE's dark style; Qt 6.4 does
// not take it into its palette), followed through the portal's SettingChanged while the app
// runs. Read asynchronously: a missing portal means no preference and never holds up
// start-up.
class DesktopColorScheme : public QObject {
    Q_OBJECT
    Q_PROPERTY(Preference preference READ preference NOTIFY preferenceChanged)

public:
    enum class Preference { none, dark, light };
    Q_ENUM(Preference)

    explicit DesktopColorScheme(QDBusConnection bus = QDBusConnection::sessionBus(),
                                QObject* parent = nullptr);

    Preference preference() const { return preference_; }

    // The portal's value: 1 dark, 2 light, 0 or anything else no preference.
    static Preference interpret(const QVariant& value);
    // Whether to draw dark: the portal's preference where it has one, else the palette's.
    static bool isDark(Preference preference, bool paletteIsDark);

signals:
    void preferenceChanged();

private slots:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void set(Preference preference);

    QDBusConnection bus_;
    Preference preference_ = Preference::none;
};

} // namespace lumetra

#include "appearance/DesktopColorScheme.h"

#include "desktop/PrivateSessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace lumetra {
namespace {

using Preference = DesktopColorScheme::Preference;
using testing::PrivateSessionBus;
using testing::waitFor;

// ---- the portal's values ----------------------------------------------------------------

// 1 is dark, 2 light, anything else (or no number) no preference; older portals wrap the
// value once more.
TEST(ColorSchemeChoice, ThePortalValueIsOneDarkTwoLightElseNone) {
    const std::pair<QVariant, Preference> cases[] = {
        {QVariant(1u), Preference::dark},
        {QVariant(2u), Preference::light},
        {QVariant(0u), Preference::none},
        {QVariant(7u), Preference::none},
        {QVariant::fromValue(QDBusVariant(QVariant(1u))), Preference::dark},
        {QVariant(QStringLiteral("prefer-dark")), Preference::none},
        {QVariant(), Preference::none}};
    for (const auto& c : cases)
        EXPECT_EQ(DesktopColorScheme::interpret(c.first), c.second) << &c - cases;
}

TEST(ColorSchemeChoice, ThePortalWinsOverThePaletteWhereItHasAPreference) {
    for (const bool palette : {false, true}) {
        EXPECT_TRUE(DesktopColorScheme::isDark(Preference::dark, palette));
        EXPECT_FALSE(DesktopColorScheme::isDark(Preference::light, palette));
        EXPECT_EQ(DesktopColorScheme::isDark(Preference::none, palette), palette);
    }
}

// ---- a portal on a private bus -----------------------------------------------------------

// The desktop portal's Settings interface, holding one color-scheme value.
class FakeSettingsPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    FakeSettingsPortal(QDBusConnection connection, uint scheme)
        : connection_(connection), scheme_(scheme) {
        connection_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                   QDBusConnection::ExportAllSlots);
        connection_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    // The user switches the desktop's style: the portal says so.
    void change(const QString& group, const QString& key, uint scheme) {
        if (key == QLatin1String("color-scheme"))
            scheme_ = scheme;
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(QVariant(scheme)));
        connection_.send(signal);
    }

public slots:
    // Like portals before version 2: the value wrapped in one more variant.
    QDBusVariant Read(const QString& group, const QString& key) {
        ++reads;
        if (group != QLatin1String("org.freedesktop.appearance") ||
            key != QLatin1String("color-scheme"))
            return QDBusVariant(QVariant());
        return QDBusVariant(QVariant::fromValue(QDBusVariant(QVariant(scheme_))));
    }

public:
    int reads = 0;

private:
    QDBusConnection connection_;
    uint scheme_;
};

TEST(DesktopColorSchemePortal, ReadsAtStartAndFollowsSettingChanged) {
    PrivateSessionBus bus;
    if (!bus.available())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    FakeSettingsPortal portal(bus.connect(), 1);
    DesktopColorScheme scheme(bus.connect());
    QSignalSpy changed(&scheme, &DesktopColorScheme::preferenceChanged);
    ASSERT_TRUE(waitFor([&] { return scheme.preference() == Preference::dark; }));
    EXPECT_EQ(portal.reads, 1);

    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    portal.change(appearance, QStringLiteral("color-scheme"), 2);
    ASSERT_TRUE(waitFor([&] { return scheme.preference() == Preference::light; }));
    // Another key of the group, and the same value again: nothing changes.
    portal.change(appearance, QStringLiteral("accent-color"), 1);
    portal.change(appearance, QStringLiteral("color-scheme"), 2);
    portal.change(appearance, QStringLiteral("color-scheme"), 0);
    ASSERT_TRUE(waitFor([&] { return scheme.preference() == Preference::none; }));
    EXPECT_EQ(changed.count(), 3); // dark, light, none
}

TEST(DesktopColorSchemePortal, NoPortalIsNoPreference) {
    PrivateSessionBus bus;
    if (!bus.available())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    DesktopColorScheme scheme(bus.connect());
    QSignalSpy changed(&scheme, &DesktopColorScheme::preferenceChanged);
    waitFor([] { return false; }, 200);
    EXPECT_EQ(scheme.preference(), Preference::none);
    EXPECT_EQ(changed.count(), 0);
    DesktopColorScheme offline{QDBusConnection(QString())};
    EXPECT_EQ(offline.preference(), Preference::none);
}

} // namespace
} // namespace lumetra

#include "DesktopColorSchemeTest.moc"

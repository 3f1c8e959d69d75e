#include "desktop/PrivateSessionBus.h"
#include "settings/SettingsTestSupport.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>

#include <gtest/gtest.h>

namespace lumetra {
namespace {

using testing::PrivateSessionBus;
using testing::waitFor;

// The panel app runs on a bus of the test's own; the bus daemon is killed under it. The app
// must say so and end with a failure status, so a later start on the new bus is the only one.
TEST(SessionBusLoss, ThePanelAppSaysSoAndExitsWithAFailure) {
    PrivateSessionBus bus;
    if (!bus.available())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    testing::SettingsFolder config{
        QByteArray(R"({"hasCompletedOnboarding": true, "showWelcomeScreen": false})")};

    QProcess app;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // Without a display lumetra runs the terminal mode; offscreen Qt never opens this one.
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":lumetra-offscreen"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), config.dir.path());
    environment.insert(QStringLiteral("LUMETRA_UPDATE_MANIFEST_URL"),
                       QStringLiteral("http://127.0.0.1:9/appcast.json"));
    app.setProcessEnvironment(environment);
    app.start(QStringLiteral(LUMETRA_BINARY), {});
    ASSERT_TRUE(app.waitForStarted(5000));

    // Running: its panel item is on the bus.
    QDBusConnection watcher = bus.connect();
    const QString item = QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(app.processId());
    ASSERT_TRUE(
        waitFor([&] { return watcher.interface()->isServiceRegistered(item).value(); }, 10000));
    // Past its start-up: it samples and draws the label.
    waitFor([] { return false; }, 1500);

    bus.kill();
    const bool finished = app.waitForFinished(15000);
    const QString errors = QString::fromUtf8(app.readAllStandardError());
    ASSERT_TRUE(finished) << "still running without its bus: " << errors.toStdString();
    EXPECT_EQ(app.exitStatus(), QProcess::NormalExit) << errors.toStdString();
    EXPECT_NE(app.exitCode(), 0) << errors.toStdString();
    EXPECT_EQ(errors.count(QStringLiteral("session bus went away")), 1) << errors.toStdString();
}

} // namespace
} // namespace lumetra

#include "desktop/XdgAutostartLoginItem.h"

#include "support/Cases.h"
#include "support/ScopedEnvironment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace lumetra;

namespace {

struct StateCase {
    std::string name;
    std::optional<QByteArray> file; // none: no autostart file
    bool enabled;
};

class AutostartStateTest : public ::testing::TestWithParam<StateCase> {};

TEST_P(AutostartStateTest, EnabledWhenTheEntryExistsAndIsNotHidden) {
    const StateCase& c = GetParam();
    QTemporaryDir dir;
    XdgAutostartLoginItem item(dir.path(), QStringLiteral("/usr/bin/lumetra"));
    if (c.file) {
        QFile out(item.filePath());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(*c.file);
    }
    EXPECT_EQ(item.isEnabled(), c.enabled);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AutostartStateTest,
    ::testing::Values(
        StateCase{"Absent", std::nullopt, false},
        StateCase{"Present", QByteArray("[Desktop Entry]\nType=Application\nExec=lumetra\n"), true},
        StateCase{"Hidden", QByteArray("[Desktop Entry]\nExec=lumetra\nHidden=true\n"), false},
        StateCase{"HiddenWithSpaces", QByteArray("[Desktop Entry]\nHidden = true\n"), false},
        StateCase{"HiddenFalse", QByteArray("[Desktop Entry]\nHidden=false\n"), true},
        // Only the main group decides; an action group's keys do not hide the entry.
        StateCase{"HiddenInAnotherGroup",
                  QByteArray("[Desktop Entry]\nExec=lumetra\n[Desktop Action x]\nHidden=true\n"),
                  true}),
    lumetra::testing::byName);

TEST(XdgAutostartLoginItemTest, RegisterWritesAnEntryForTheBinaryAndUnregisterRemovesIt) {
    QTemporaryDir dir;
    const QString folder = dir.path() + QStringLiteral("/autostart");
    XdgAutostartLoginItem item(folder, QStringLiteral("/opt/Lumetra App/lumetra"));
    EXPECT_EQ(item.registerItem(), std::nullopt);
    ASSERT_TRUE(item.isEnabled());
    QFile written(item.filePath());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QByteArray text = written.readAll();
    EXPECT_TRUE(text.startsWith("[Desktop Entry]\n"));
    // A path with a space is quoted so the session starts the right binary.
    EXPECT_TRUE(text.contains("\nExec=\"/opt/Lumetra App/lumetra\"\n")) << text.constData();
    EXPECT_EQ(item.filePath(), folder + QStringLiteral("/io.lumetra.Lumetra.desktop"));

    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_FALSE(QFile::exists(item.filePath()));
    // Removing what is not there is no failure.
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
}

TEST(XdgAutostartLoginItemTest, RegisteringOverAHiddenEntryEnablesIt) {
    QTemporaryDir dir;
    XdgAutostartLoginItem item(dir.path(), QStringLiteral("/usr/bin/lumetra"));
    QFile out(item.filePath());
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("[Desktop Entry]\nHidden=true\n");
    out.close();
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_TRUE(item.isEnabled());
}

TEST(XdgAutostartLoginItemTest, AnUnwritableFolderIsAReasonNotACrash) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root writes anywhere";
    QTemporaryDir dir;
    ASSERT_TRUE(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner));
    XdgAutostartLoginItem item(dir.path() + QStringLiteral("/autostart"),
                               QStringLiteral("/usr/bin/lumetra"));
    const std::optional<QString> failure = item.registerItem();
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(failure->contains(dir.path())) << failure->toStdString();
    EXPECT_FALSE(item.isEnabled());
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST(XdgAutostartLoginItemTest, AFileWhereTheFolderShouldBeIsAReason) {
    // Works as root too: no permission can make a regular file a folder.
    QTemporaryDir dir;
    const QString blocker = dir.path() + QStringLiteral("/autostart");
    QFile file(blocker);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    XdgAutostartLoginItem item(blocker, QStringLiteral("/usr/bin/lumetra"));
    EXPECT_TRUE(item.registerItem().has_value());
    EXPECT_FALSE(item.isEnabled());
}

} // namespace

namespace {

// The autostart folder follows the settings' rule: XDG_CONFIG_HOME, else HOME, and without
// HOME never "//.config/autostart".
TEST(AutostartFolderTest, FollowsTheConfigurationFolder) {
    lumetra::testing::ScopedEnvironment environment;
    environment.set("XDG_CONFIG_HOME", "/c");
    EXPECT_EQ(XdgAutostartLoginItem::standardDirectory(), "/c/autostart");
    environment.unset("XDG_CONFIG_HOME");
    environment.set("HOME", "/home/u");
    EXPECT_EQ(XdgAutostartLoginItem::standardDirectory(), "/home/u/.config/autostart");
    environment.unset("HOME");
    EXPECT_FALSE(XdgAutostartLoginItem::standardDirectory().startsWith("//"));
}

} // namespace

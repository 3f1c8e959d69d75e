#include "desktop/XdgAutostartLoginItem.h"

#include "support/ScopedEnvironment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace lumetra;

namespace {

// Enabled when the entry exists and is not hidden; registering over any of them enables it.
TEST(XdgAutostartLoginItemTest, EnabledWhenTheEntryExistsAndIsNotHidden) {
    for (const auto& [file, enabled] : std::initializer_list<std::pair<const char*, bool>>{
             {nullptr, false},
             {"[Desktop Entry]\nType=Application\nExec=lumetra\n", true},
             {"[Desktop Entry]\nExec=lumetra\nHidden=true\n", false},
             {"[Desktop Entry]\nHidden = true\n", false},
             {"[Desktop Entry]\nHidden=false\n", true},
             // Only the main group decides; an action group's keys do not hide the entry.
             {"[Desktop Entry]\nExec=lumetra\n[Desktop Action x]\nHidden=true\n", true}}) {
        QTemporaryDir dir;
        XdgAutostartLoginItem item(dir.path(), QStringLiteral("/usr/bin/lumetra"));
        if (file) {
            QFile out(item.filePath());
            ASSERT_TRUE(out.open(QIODevice::WriteOnly));
            out.write(file);
        }
        EXPECT_EQ(item.isEnabled(), enabled) << (file ? file : "no file");
        EXPECT_EQ(item.registerItem(), std::nullopt);
        EXPECT_TRUE(item.isEnabled()) << (file ? file : "no file");
    }
}

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

// An unwritable folder, or a file where the folder should be (that one as root too: no
// permission makes a regular file a folder), is a reason, not a crash.
TEST(XdgAutostartLoginItemTest, AFolderThatCannotBeWrittenIsAReason) {
    QTemporaryDir dir;
    const QString blocker = dir.path() + QStringLiteral("/autostart");
    QFile file(blocker);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    XdgAutostartLoginItem blocked(blocker, QStringLiteral("/usr/bin/lumetra"));
    EXPECT_TRUE(blocked.registerItem().has_value());
    EXPECT_FALSE(blocked.isEnabled());
    if (::geteuid() == 0)
        GTEST_SKIP() << "root writes anywhere";

    QTemporaryDir readOnly;
    ASSERT_TRUE(QFile::setPermissions(readOnly.path(), QFile::ReadOwner | QFile::ExeOwner));
    XdgAutostartLoginItem item(readOnly.path() + QStringLiteral("/autostart"),
                               QStringLiteral("/usr/bin/lumetra"));
    const std::optional<QString> failure = item.registerItem();
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(failure->contains(readOnly.path())) << failure->toStdString();
    EXPECT_FALSE(item.isEnabled());
    QFile::setPermissions(readOnly.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

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

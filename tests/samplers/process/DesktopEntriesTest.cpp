#include "samplers/process/DesktopEntries.h"

#include "model/Logging.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"
#include "support/ScopedEnvironment.h"

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::LogCapture;

namespace {

TEST(DesktopEntryTest, ReadsNameAndIconOfTheMainGroupOnly) {
    const std::string text = "# comment\n[Desktop Entry]\nType=Application\nName = Firefox \n"
                             "Name[de]=Firefox-Webbrowser\nName[pt_BR]=Navegador\nIcon=firefox\n"
                             "[Desktop Action new]\nName=New Window\nIcon=other\n";
    const std::tuple<const char*, DesktopEntry> cases[] = {
        {"", {"Firefox", "firefox"}},
        {"de", {"Firefox-Webbrowser", "firefox"}},
        {"de_AT", {"Firefox-Webbrowser", "firefox"}},
        {"pt_BR", {"Navegador", "firefox"}},
        {"pt_PT", {"Firefox", "firefox"}},
        {"fr", {"Firefox", "firefox"}}};
    for (const auto& [language, entry] : cases)
        EXPECT_EQ(parseDesktopEntry(text, language), entry) << language;
    EXPECT_EQ(parseDesktopEntry("[Desktop Action x]\nName=Not it\n"), DesktopEntry{});
    EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nName[de]=Nur Deutsch\nIcon=a\n", "de"),
              (DesktopEntry{"", "a"}))
        << "a localised name without the plain Name= is no name";
    EXPECT_EQ(parseDesktopEntry("\x01\xff=\n[Desktop Entry\nName"), DesktopEntry{});
}

TEST(DesktopEntriesTest, FirstDataDirWinsAndBadFilesAreLoggedOnce) {
    const std::string tree = fixtureRoot("processes/gnome");
    DesktopEntries entries({tree + "/home/.local/share", tree + "/usr/share"});
    LogCapture log(logMonitoring());
    EXPECT_EQ(entries.find("org.gnome.Terminal"),
              (DesktopEntry{"My Terminal", "utilities-terminal"}));
    EXPECT_EQ(entries.find("firefox"), (DesktopEntry{"Firefox", "firefox"}));
    EXPECT_EQ(entries.find("org.example.Missing"), DesktopEntry{});
    EXPECT_EQ(entries.find("org.example.Nameless"), (DesktopEntry{"", "mystery"}));
    EXPECT_EQ(entries.find("org.example.Broken"), DesktopEntry{}) << "a directory in its place";
    EXPECT_EQ(entries.find("../../etc/passwd"), DesktopEntry{});
    EXPECT_EQ(DesktopEntries({tree + "/usr/share"}, "de_DE").find("firefox").name,
              "Firefox-Webbrowser");
    for (int again = 0; again < 3; ++again) {
        entries.find("org.example.Nameless");
        entries.find("org.example.Broken");
    }
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 2) << lines.join('\n').toStdString();
    EXPECT_TRUE(
        lines[0].endsWith("org.example.Nameless.desktop: no Name= in its [Desktop Entry] group"))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains("org.example.Broken.desktop: ")) << lines[1].toStdString();
}

TEST(DesktopEntriesTest, XdgDataDirsFollowTheEnvironmentAndAddFlatpakAndSnap) {
    lumetra::testing::ScopedEnvironment environment;
    environment.set("HOME", "/home/u");
    environment.unset("XDG_DATA_HOME");
    environment.set("XDG_DATA_DIRS", "/a::/var/lib/snapd/desktop:/b");
    EXPECT_EQ(DesktopEntries::xdgDataDirs(),
              (std::vector<std::string>{"/home/u/.local/share", "/a", "/var/lib/snapd/desktop",
                                        "/b", "/home/u/.local/share/flatpak/exports/share",
                                        "/var/lib/flatpak/exports/share"}));
    environment.set("XDG_DATA_HOME", "/d");
    environment.unset("XDG_DATA_DIRS");
    EXPECT_EQ(
        DesktopEntries::xdgDataDirs(),
        (std::vector<std::string>{"/d", "/usr/local/share", "/usr/share",
                                  "/home/u/.local/share/flatpak/exports/share",
                                  "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"}));
}

} // namespace

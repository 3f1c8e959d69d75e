#include "samplers/process/AppScope.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace lumetra;

namespace {

constexpr const char* kUser = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/";

struct ScopeCase {
    const char* name;
    std::string cgroup;
    std::optional<AppScope> app;
};

class AppScopeTest : public ::testing::TestWithParam<ScopeCase> {};

TEST_P(AppScopeTest, FindsTheApplicationOfEachDesktopsUnits) {
    EXPECT_EQ(parseAppScope(GetParam().cgroup), GetParam().app) << GetParam().cgroup;
}

AppScope app(const std::string& id) {
    return AppScope{id, id, id};
}

const ScopeCase kScopes[] = {
    {"GNOME", std::string(kUser) + "app-gnome-firefox-4242.scope\n", app("firefox")},
    {"GNOMEReverseDns", std::string(kUser) + "app-gnome-org.gnome.Terminal-1300.scope\n",
     app("org.gnome.Terminal")},
    {"GNOMEEscapedDash", std::string(kUser) + "app-gnome-google\\x2dchrome-77.scope\n",
     app("google-chrome")},
    {"GNOMEUnescapedDash", std::string(kUser) + "app-gnome-google-chrome-77.scope\n",
     app("google-chrome")},
    {"KDE", std::string(kUser) + "app-org.kde.konsole-5d5e3c4a52b54e7a8b8f0a84d0e0b7f2.scope\n",
     app("org.kde.konsole")},
    {"KDEService", std::string(kUser) + "app-org.kde.dolphin@8b3c1e.service\n",
     app("org.kde.dolphin")},
    {"Flatpak", std::string(kUser) + "app-flatpak-org.gimp.GIMP-3100.scope\n",
     app("org.gimp.GIMP")},
    {"Snap", std::string(kUser) + "snap.code.code-1b4e28ba-2fa1-11d2-883f-0016d3cca427.scope\n",
     AppScope{"snap.code_code", "code_code", "code"}},
    {"SnapDashedApp",
     std::string(kUser) + "snap.firefox.geckodriver-1b4e28ba-2fa1-11d2-883f-0016d3cca427.scope\n",
     AppScope{"snap.firefox_geckodriver", "firefox_geckodriver", "firefox"}},
    {"SnapService", "0::/system.slice/snap.lxd.daemon.service\n",
     AppScope{"snap.lxd_daemon", "lxd_daemon", "lxd"}},
    {"SystemdAppService", std::string(kUser) + "app-firefox@9d3e2a.service\n", app("firefox")},
    {"XdgAutostart",
     std::string(kUser) + "app-org.gnome.Evolution\\x2dalarm\\x2dnotify@autostart.service\n",
     app("org.gnome.Evolution-alarm-notify")},
    {"COSMIC", std::string(kUser) + "app-cosmic-com.system76.CosmicTerm-90.scope\n",
     app("com.system76.CosmicTerm")},
    // A launcher not in the list (here a scope made with systemd-run) before a reverse-DNS id.
    {"UnknownLauncherBeforeReverseDns",
     std::string(kUser) + "app-lumetratest-org.example.ScopeTest-4242.scope\n",
     app("org.example.ScopeTest")},
    // A terminal's shell sits in a scope of its own below the terminal's: it belongs to the
    // terminal's group only where the desktop put it under the app's scope.
    {"NestedBelowAppScope",
     std::string(kUser) + "app-gnome-org.gnome.Terminal-1300.scope/vte-spawn-2a1e.scope\n",
     app("org.gnome.Terminal")},
    {"LegacyHierarchy",
     "12:memory:/user.slice\n1:name=systemd:/user.slice/user-1000.slice/user@1000.service/"
     "app.slice/app-gnome-thunderbird-5300.scope\n",
     app("thunderbird")},
    {"UnifiedLineWinsOverLegacy",
     "1:name=systemd:/user.slice/app-gnome-a-1.scope\n0::/system.slice/cron.service\n",
     std::nullopt},
    {"SystemService", "0::/system.slice/nginx.service\n", std::nullopt},
    {"SessionService",
     "0::/user.slice/user-1000.slice/user@1000.service/session.slice/"
     "org.gnome.Shell@x11.service\n",
     std::nullopt},
    {"LoginSession", "0::/user.slice/user-1000.slice/session-2.scope\n", std::nullopt},
    {"Root", "0::/\n", std::nullopt},
    {"ScopeWithoutRandomPart", std::string(kUser) + "app-firefox.scope\n", std::nullopt},
    {"Empty", "", std::nullopt},
    {"Garbage", "\xff\x01::app-\n", std::nullopt},
};

INSTANTIATE_TEST_SUITE_P(Units, AppScopeTest, ::testing::ValuesIn(kScopes),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace

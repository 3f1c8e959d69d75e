#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumetra {

// The application a process was launched as, from the systemd unit its cgroup sits in.
struct AppScope {
    std::string appId;        // what its processes are grouped by
    std::string desktopId;    // the desktop entry to look for, without ".desktop"
    std::string fallbackName; // the name shown when no desktop entry names it

    bool operator==(const AppScope&) const = default;
};

// The application of a /proc/PID/cgroup text, or nothing for a process outside an app unit
// (a system or user service, a login session, a terminal's children). Desktops start apps as:
//   app[-<launcher>]-<desktop id>-<random>.scope   app-gnome-firefox-4242.scope,
//                                                  app-flatpak-org.gimp.GIMP-2817.scope,
//                                                  app-org.kde.konsole-b2c1.scope
//   app[-<launcher>]-<desktop id>[@<random>].service   app-firefox@9d3e.service
//   snap.<snap>.<app>-<uuid>.scope                 snap.code.code-1b4e….scope
// with '-' inside the id escaped as \x2d. The unified hierarchy's line ("0::") is read, or
// on a legacy hierarchy the name=systemd one.
std::optional<AppScope> parseAppScope(std::string_view cgroupText);

// One unit name (the last part of the path), as above.
std::optional<AppScope> parseAppUnit(std::string_view unit);

} // namespace lumetra

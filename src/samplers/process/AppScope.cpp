#include "samplers/process/AppScope.h"

#include "model/HexDigit.h"
#include "samplers/kernel/TextScan.h"

#include <array>

namespace lumetra {

namespace {

// Launchers seen in the first part after "app-"; one not listed here is still recognised
// when the id after it is reverse-DNS (it has a dot and the launcher has none).
constexpr std::array kLaunchers{std::string_view("gnome"),   std::string_view("kde"),
                                std::string_view("flatpak"), std::string_view("xfce"),
                                std::string_view("dbus"),    std::string_view("systemd"),
                                std::string_view("cosmic"),  std::string_view("budgie"),
                                std::string_view("mate"),    std::string_view("lxqt")};

bool endsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

// systemd's \xNN escapes (unit names hold '-' inside ids as \x2d).
std::string unescape(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
            const int high = hexDigitValue(text[i + 2]);
            const int low = hexDigitValue(text[i + 3]);
            if (high >= 0 && low >= 0) {
                out.push_back(char(high * 16 + low));
                i += 3;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out;
}

bool isUuid(std::string_view text) {
    if (text.size() != 36)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash ? text[i] != '-' : hexDigitValue(text[i]) < 0)
            return false;
    }
    return true;
}

std::optional<AppScope> parseSnapUnit(std::string_view name, bool scope) {
    // snap.<snap>.<app>-<uuid> (a scope) or snap.<snap>.<app> (a service)
    name.remove_prefix(5);
    const auto dot = name.find('.');
    if (dot == std::string_view::npos || dot == 0)
        return std::nullopt;
    const std::string_view snap = name.substr(0, dot);
    std::string_view app = name.substr(dot + 1);
    if (scope && app.size() > 37 && isUuid(app.substr(app.size() - 36)) &&
        app[app.size() - 37] == '-')
        app.remove_suffix(37);
    else if (scope) {
        const auto dash = app.rfind('-');
        if (dash != std::string_view::npos)
            app = app.substr(0, dash);
    }
    if (app.empty())
        return std::nullopt;
    std::string desktopId = std::string(snap) + '_' + std::string(app);
    return AppScope{"snap." + desktopId, desktopId, std::string(snap)};
}

} // namespace

std::optional<AppScope> parseAppUnit(std::string_view unit) {
    const bool scope = endsWith(unit, ".scope");
    const bool service = endsWith(unit, ".service");
    if (!scope && !service)
        return std::nullopt;
    std::string_view name = unit.substr(0, unit.size() - (scope ? 6 : 8));
    if (name.starts_with("snap."))
        return parseSnapUnit(name, scope);
    if (!name.starts_with("app-"))
        return std::nullopt;
    name.remove_prefix(4);
    if (service) {
        const auto at = name.find('@');
        if (at != std::string_view::npos)
            name = name.substr(0, at);
    } else {
        const auto dash = name.rfind('-');
        if (dash == std::string_view::npos)
            return std::nullopt; // a scope always ends in its random part
        name = name.substr(0, dash);
    }
    const auto dash = name.find('-');
    if (dash != std::string_view::npos) {
        const std::string_view first = name.substr(0, dash);
        const std::string_view rest = name.substr(dash + 1);
        bool launcher = false;
        for (std::string_view known : kLaunchers)
            launcher = launcher || first == known;
        launcher = launcher || (first.find('.') == std::string_view::npos &&
                                rest.find('.') != std::string_view::npos);
        if (launcher)
            name = rest;
    }
    if (name.empty())
        return std::nullopt;
    std::string id = unescape(name);
    return AppScope{id, id, id};
}

std::optional<AppScope> parseAppScope(std::string_view cgroupText) {
    std::string_view path;
    for (std::string_view text = cgroupText; !text.empty();) {
        const std::string_view line = textscan::trim(textscan::nextLine(text));
        if (line.starts_with("0::")) {
            path = line.substr(3);
            break;
        }
        const auto named = line.find(":name=systemd:");
        if (named != std::string_view::npos)
            path = line.substr(named + 14);
    }
    // The deepest app unit on the path: an app may make cgroups of its own below its scope.
    while (!path.empty()) {
        const auto slash = path.rfind('/');
        const std::string_view part = path.substr(slash == std::string_view::npos ? 0 : slash + 1);
        if (std::optional<AppScope> app = parseAppUnit(part))
            return app;
        if (slash == std::string_view::npos)
            break;
        path = path.substr(0, slash);
    }
    return std::nullopt;
}

} // namespace lumetra

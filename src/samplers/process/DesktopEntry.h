#pragma once

#include <string>
#include <string_view>

namespace lumetra {

// What a process list takes from an application's .desktop file.
struct DesktopEntry {
    std::string name; // empty: the file is missing, unreadable or has no Name=
    std::string icon;

    bool operator==(const DesktopEntry&) const = default;
};

// The [Desktop Entry] group's Name (localised for `language`, "de_AT" or "de", where the
// file has it) and Icon. Other groups (actions) are skipped.
DesktopEntry parseDesktopEntry(std::string_view text, std::string_view language = {});

} // namespace lumetra

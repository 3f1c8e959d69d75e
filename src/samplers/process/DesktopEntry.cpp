#include "samplers/process/DesktopEntry.h"

#include "samplers/kernel/TextScan.h"

namespace lumetra {

DesktopEntry parseDesktopEntry(std::string_view text, std::string_view language) {
    const std::string_view shortLanguage = language.substr(0, language.find('_'));
    DesktopEntry entry;
    std::string exactName;
    std::string shortName;
    bool inMainGroup = false;
    while (!text.empty()) {
        const std::string_view line = textscan::trim(textscan::nextLine(text));
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inMainGroup)
            continue;
        const auto equals = line.find('=');
        if (equals == std::string_view::npos)
            continue;
        const std::string_view key = textscan::trim(line.substr(0, equals));
        const std::string value(textscan::trim(line.substr(equals + 1)));
        if (key == "Name")
            entry.name = value;
        else if (key == "Icon")
            entry.icon = value;
        else if (!language.empty() && key.starts_with("Name[") && key.ends_with("]")) {
            const std::string_view locale = key.substr(5, key.size() - 6);
            if (locale == language)
                exactName = value;
            else if (locale == shortLanguage)
                shortName = value;
        }
    }
    if (!entry.name.empty()) {
        if (!exactName.empty())
            entry.name = exactName;
        else if (!shortName.empty())
            entry.name = shortName;
    }
    return entry;
}

} // namespace lumetra

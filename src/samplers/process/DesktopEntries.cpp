#include "samplers/process/DesktopEntries.h"

#include "model/Logging.h"
#include "samplers/kernel/KernelFile.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>

namespace lumetra {

namespace {

// A desktop entry is a few kilobytes; a larger file is read up to here.
constexpr std::size_t kEntryLimit = 256 * 1024;

std::vector<std::string> splitPaths(const char* value) {
    std::vector<std::string> paths;
    std::string_view text(value ? value : "");
    while (!text.empty()) {
        const auto colon = text.find(':');
        const std::string_view part = text.substr(0, colon);
        if (!part.empty())
            paths.emplace_back(part);
        text.remove_prefix(colon == std::string_view::npos ? text.size() : colon + 1);
    }
    return paths;
}

} // namespace

DesktopEntries::DesktopEntries(std::vector<std::string> dataDirs, std::string language)
    : dataDirs_(std::move(dataDirs)), language_(std::move(language)) {}

std::vector<std::string> DesktopEntries::xdgDataDirs() {
    std::vector<std::string> dirs;
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    if (dataHome && *dataHome)
        dirs.emplace_back(dataHome);
    else if (home && *home)
        dirs.push_back(std::string(home) + "/.local/share");
    const char* dataDirs = std::getenv("XDG_DATA_DIRS");
    std::vector<std::string> system =
        splitPaths(dataDirs && *dataDirs ? dataDirs : "/usr/local/share:/usr/share");
    dirs.insert(dirs.end(), system.begin(), system.end());
    // Sessions started without Flatpak's or snapd's profile scripts lack these.
    std::vector<std::string> exports = {"/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"};
    if (home && *home)
        exports.insert(exports.begin(), std::string(home) + "/.local/share/flatpak/exports/share");
    for (std::string& dir : exports)
        if (std::find(dirs.begin(), dirs.end(), dir) == dirs.end())
            dirs.push_back(std::move(dir));
    return dirs;
}

const DesktopEntry& DesktopEntries::find(const std::string& desktopId) {
    auto found = cache_.find(desktopId);
    if (found == cache_.end())
        found = cache_.emplace(desktopId, load(desktopId)).first;
    return found->second;
}

DesktopEntry DesktopEntries::load(const std::string& desktopId) const {
    if (desktopId.empty() || desktopId.find('/') != std::string::npos)
        return {};
    std::string buffer;
    for (const std::string& dir : dataDirs_) {
        const std::string path = dir + "/applications/" + desktopId + ".desktop";
        struct stat info {};
        if (::stat(path.c_str(), &info) != 0)
            continue;
        const KernelFileRead read = KernelFile::readOnce(path, buffer, kEntryLimit);
        if (!read.ok() && read.error != KernelFileError::tooLarge) {
            qCWarning(logMonitoring, "%s: %s", path.c_str(), read.reason());
            return {};
        }
        DesktopEntry entry = parseDesktopEntry(read.text, language_);
        if (entry.name.empty())
            qCWarning(logMonitoring, "%s: no Name= in its [Desktop Entry] group", path.c_str());
        return entry;
    }
    return {};
}

} // namespace lumetra

#pragma once

#include "samplers/process/DesktopEntry.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace lumetra {

// Finds applications' desktop entries in the XDG data directories, first one wins, and keeps
// each answer (found or not) for the life of the object: one look-up per application.
class DesktopEntries {
public:
    explicit DesktopEntries(std::vector<std::string> dataDirs, std::string language = {});

    // $XDG_DATA_HOME (or ~/.local/share), then $XDG_DATA_DIRS (or /usr/local/share:/usr/share),
    // then where Flatpak and snap export their entries when those are not listed already.
    static std::vector<std::string> xdgDataDirs();

    // The entry of `desktopId` (without ".desktop"); an empty name when none is found, a file
    // cannot be read (one log line) or it has no Name= (one log line).
    const DesktopEntry& find(const std::string& desktopId);

    const std::vector<std::string>& dataDirs() const { return dataDirs_; }

private:
    DesktopEntry load(const std::string& desktopId) const;

    std::vector<std::string> dataDirs_;
    std::string language_;
    std::unordered_map<std::string, DesktopEntry> cache_;
};

} // namespace lumetra

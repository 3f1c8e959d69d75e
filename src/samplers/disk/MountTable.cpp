#include "samplers/disk/MountTable.h"

#include "samplers/kernel/TextScan.h"

#include <charconv>

namespace lumetra {

namespace {

// Fields are separated by exactly one space; an empty source shows up as an empty field,
// so blanks are not collapsed.
std::string_view nextSpaceField(std::string_view& line) {
    const auto end = line.find(' ');
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return field;
}

template <typename Number>
bool parseWhole(std::string_view text, Number& value) {
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    return !text.empty() && ec == std::errc{} && ptr == end;
}

bool parseDevice(std::string_view text, std::uint32_t& major, std::uint32_t& minor) {
    const auto colon = text.find(':');
    return colon != std::string_view::npos && parseWhole(text.substr(0, colon), major) &&
           parseWhole(text.substr(colon + 1), minor);
}

bool listHas(std::string_view list, std::string_view name) {
    while (!list.empty()) {
        const auto comma = list.find(',');
        const std::string_view item = list.substr(0, comma);
        if (item == name ||
            (item.size() > name.size() && item.starts_with(name) && item[name.size()] == '='))
            return true;
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    return false;
}

bool parseLine(std::string_view line, MountTable::Entry& entry) {
    if (!parseWhole(nextSpaceField(line), entry.id) ||
        !parseWhole(nextSpaceField(line), entry.parentId) ||
        !parseDevice(nextSpaceField(line), entry.major, entry.minor))
        return false;
    entry.root = nextSpaceField(line);
    entry.mountPoint = nextSpaceField(line);
    entry.mountOptions = nextSpaceField(line);
    if (entry.root.empty() || entry.mountPoint.empty())
        return false;
    // Zero or more optional fields ("shared:1", "master:2") end with a lone "-".
    for (;;) {
        if (line.empty())
            return false;
        if (nextSpaceField(line) == "-")
            break;
    }
    entry.fsType = nextSpaceField(line);
    entry.source = nextSpaceField(line);
    entry.superOptions = nextSpaceField(line);
    return !entry.fsType.empty();
}

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

} // namespace

bool MountTable::Entry::hasOption(std::string_view name) const {
    return listHas(mountOptions, name) || listHas(superOptions, name);
}

std::size_t MountTable::parse(std::string_view text, std::vector<Entry>& entries) {
    entries.clear();
    std::size_t malformed = 0;
    while (!text.empty()) {
        const std::string_view line = textscan::nextLine(text);
        if (textscan::trim(line).empty())
            continue;
        Entry entry;
        if (parseLine(line, entry))
            entries.push_back(entry);
        else
            ++malformed;
    }
    return malformed;
}

std::string MountTable::decode(std::string_view escaped) {
    std::string decoded;
    decoded.reserve(escaped.size());
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] == '\\' && i + 3 < escaped.size() && isOctal(escaped[i + 1]) &&
            isOctal(escaped[i + 2]) && isOctal(escaped[i + 3])) {
            decoded.push_back(static_cast<char>(((escaped[i + 1] - '0') << 6) |
                                                ((escaped[i + 2] - '0') << 3) |
                                                (escaped[i + 3] - '0')));
            i += 3;
        } else {
            decoded.push_back(escaped[i]);
        }
    }
    return decoded;
}

} // namespace lumetra

#include "samplers/disk/DiskStats.h"

#include "samplers/kernel/TextScan.h"

namespace lumetra {

using namespace textscan;

namespace {

// Columns after "major minor name", counted from 0.
constexpr int kSectorsReadColumn = 2;
constexpr int kSectorsWrittenColumn = 6;
constexpr int kMinimumCounters = 11;

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

DiskStatsLineParse parseDiskStatsLine(std::string_view line) {
    DiskStatsLineParse parse;
    std::string_view rest = line;
    const std::string_view major = nextField(rest);
    const std::string_view minor = nextField(rest);
    parse.line.name = nextField(rest);
    if (parse.line.name.empty()) {
        parse.fields = major.empty() ? 0 : minor.empty() ? 1 : 2;
        parse.error = DiskStatsLineError::tooFewFields;
        return parse;
    }
    parse.fields = 3;
    if (!parseUnsigned(major) || !parseUnsigned(minor))
        parse.error = DiskStatsLineError::badNumber;
    for (std::string_view field = nextField(rest); !field.empty(); field = nextField(rest)) {
        const int column = parse.fields - 3;
        ++parse.fields;
        if (column != kSectorsReadColumn && column != kSectorsWrittenColumn)
            continue;
        const std::optional<std::uint64_t> value = parseUnsigned(field);
        if (!value)
            parse.error = DiskStatsLineError::badNumber;
        else if (column == kSectorsReadColumn)
            parse.line.sectorsRead = *value;
        else
            parse.line.sectorsWritten = *value;
    }
    if (parse.fields - 3 < kMinimumCounters)
        parse.error = DiskStatsLineError::tooFewFields;
    return parse;
}

std::string_view diskStatsDeviceName(std::string_view line) {
    nextField(line);
    nextField(line);
    return nextField(line);
}

bool isVirtualBlockDeviceName(std::string_view name) {
    for (std::string_view prefix : {"loop", "ram", "zram", "dm-", "md", "nbd"}) {
        if (startsWith(name, prefix))
            return true;
    }
    return false;
}

bool looksLikePartitionName(std::string_view name) {
    if (name.empty() || !isDigit(name.back()))
        return false;
    std::size_t digits = name.size();
    while (digits > 0 && isDigit(name[digits - 1]))
        --digits;
    const std::string_view stem = name.substr(0, digits);
    // nvme0n1p2, mmcblk0p1: a "p" after the disk's own number.
    if (stem.size() >= 2 && stem.back() == 'p' && isDigit(stem[stem.size() - 2]))
        return true;
    // sda1, vdb2, xvda1, hdc3: letters then the partition number. Disks named with a number
    // of their own (nvme0n1, mmcblk0) are handled above.
    for (std::string_view prefix : {"sd", "vd", "hd", "xvd"}) {
        if (startsWith(stem, prefix) && stem.size() > prefix.size())
            return stem.find_first_of("0123456789") == std::string_view::npos;
    }
    return false;
}

} // namespace lumetra

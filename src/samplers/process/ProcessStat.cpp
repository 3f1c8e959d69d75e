#include "samplers/process/ProcessStat.h"

#include "samplers/kernel/TextScan.h"

#include <algorithm>
#include <cstring>
#include <string.h>

namespace lumetra {

std::optional<ProcessStat> parseProcessStat(std::string_view text) {
    const auto open = text.find('(');
    if (open == std::string_view::npos)
        return std::nullopt;
    // comm is at most 64 bytes (a kernel worker's "kworker/u8:2-events_unbound"; 15 for any
    // other task), and the fields after it never hold a ')': its end is the last ')' within
    // that reach, found without walking the whole line back.
    constexpr std::size_t kCommReach = 64 + 2;
    const std::size_t reach = std::min(text.size() - open, kCommReach);
    const void* last = ::memrchr(text.data() + open, ')', reach);
    if (!last)
        return std::nullopt;
    const auto close = std::size_t(static_cast<const char*>(last) - text.data());
    ProcessStat stat;
    stat.comm = text.substr(open + 1, close - open - 1);

    // Fields are numbered from 1 (pid) as proc(5) does; comm is 2, so after it comes 3. The
    // kernel separates them by single spaces; a refresh parses one line per process, so the
    // fields it skips are jumped over with memchr rather than looked at.
    const char* position = text.data() + close + 1;
    const char* const end = text.data() + text.size();
    std::uint64_t utime = 0;
    for (int number = 3; number <= 24; ++number) {
        while (position < end && textscan::isBlank(*position))
            ++position;
        if (position >= end)
            return std::nullopt; // cut short before rss
        const void* blank = std::memchr(position, ' ', std::size_t(end - position));
        const char* fieldEnd = blank ? static_cast<const char*>(blank) : end;
        const std::string_view field(position, std::size_t(fieldEnd - position));
        position = fieldEnd;
        if (number == 3) {
            if (field.size() != 1)
                return std::nullopt;
            stat.state = field.front();
            continue;
        }
        if (number != 9 && number != 14 && number != 15 && number != 20 && number != 22 &&
            number != 24)
            continue;
        const std::optional<std::uint64_t> value = textscan::parseUnsigned(textscan::trim(field));
        if (!value)
            return std::nullopt;
        switch (number) {
        case 9:
            stat.flags = *value;
            break;
        case 14:
            utime = *value;
            break;
        case 15:
            stat.cpuTicks = textscan::saturatingAdd(utime, *value);
            break;
        case 20:
            stat.threads = *value;
            break;
        case 22:
            stat.startTime = *value;
            break;
        case 24:
            stat.residentPages = *value;
            break;
        }
    }
    return stat;
}

} // namespace lumetra

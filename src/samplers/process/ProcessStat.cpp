#include "samplers/process/ProcessStat.h"

#include "samplers/kernel/TextScan.h"

namespace lumetra {

std::optional<ProcessStat> parseProcessStat(std::string_view text) {
    const auto open = text.find('(');
    const auto close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;
    ProcessStat stat;
    stat.comm = text.substr(open + 1, close - open - 1);
    std::string_view rest = text.substr(close + 1);

    // Fields are numbered from 1 (pid) as proc(5) does; comm is 2, so `rest` starts at 3.
    int number = 3;
    std::uint64_t utime = 0;
    for (std::string_view field = textscan::nextField(rest); !field.empty();
         field = textscan::nextField(rest), ++number) {
        if (number == 3) {
            if (field.size() != 1)
                return std::nullopt;
            stat.state = field.front();
            continue;
        }
        std::optional<std::uint64_t> value;
        switch (number) {
        case 9:
        case 14:
        case 15:
        case 20:
        case 22:
        case 24:
            value = textscan::parseUnsigned(textscan::trim(field));
            if (!value)
                return std::nullopt;
            break;
        default:
            continue;
        }
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
            return stat;
        }
    }
    return std::nullopt; // cut short before rss
}

} // namespace lumetra

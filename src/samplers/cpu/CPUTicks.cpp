#include "samplers/cpu/CPUTicks.h"

#include "samplers/kernel/TextScan.h"

#include <array>

namespace lumetra {

using namespace textscan;

// One pass over the characters: this runs every tick, and the line has ten numbers.
std::optional<CPUTicks> parseProcStatCPULine(std::string_view text) {
    // "cpu" and a blank: the aggregate line, not "cpu0".
    if (text.size() < 4 || text.substr(0, 3) != "cpu" || !isBlank(text[3]))
        return std::nullopt;
    const char* p = text.data() + 3;
    const char* const end = text.data() + text.size();

    enum Column { user, nice, system, idle, iowait, irq, softirq, steal, columnCount };
    std::array<std::uint64_t, columnCount> values{};
    int parsed = 0;
    for (; parsed < columnCount; ++parsed) {
        while (p != end && isBlank(*p))
            ++p;
        if (p == end || *p == '\n')
            break;
        const char* const digits = p;
        std::uint64_t value = 0;
        for (; p != end && *p >= '0' && *p <= '9'; ++p) {
            if (__builtin_mul_overflow(value, 10u, &value) ||
                __builtin_add_overflow(value, static_cast<unsigned>(*p - '0'), &value))
                return std::nullopt;
        }
        if (p == digits || (p != end && !isBlank(*p) && *p != '\n'))
            return std::nullopt;
        values[static_cast<std::size_t>(parsed)] = value;
    }
    if (parsed < 4)
        return std::nullopt;

    CPUTicks ticks;
    ticks.user = values[user];
    ticks.nice = values[nice];
    ticks.system = saturatingAdd(saturatingAdd(values[system], values[irq]),
                                 saturatingAdd(values[softirq], values[steal]));
    ticks.idle = saturatingAdd(values[idle], values[iowait]);
    return ticks;
}

namespace {

std::uint64_t forwardDelta(std::uint64_t previous, std::uint64_t current) {
    return current >= previous ? current - previous : 0;
}

} // namespace

double usageBetween(const CPUTicks& previous, const CPUTicks& current) {
    const auto user = static_cast<double>(forwardDelta(previous.user, current.user));
    const auto system = static_cast<double>(forwardDelta(previous.system, current.system));
    const auto idle = static_cast<double>(forwardDelta(previous.idle, current.idle));
    const auto nice = static_cast<double>(forwardDelta(previous.nice, current.nice));
    const double busy = system + user + nice;
    const double total = busy + idle;
    if (!(total > 0))
        return 0;
    const double usage = busy / total * 100;
    if (usage < 0)
        return 0;
    if (usage > 100)
        return 100;
    return usage;
}

} // namespace lumetra

#include "samplers/cpu/CPUTicks.h"

#include "samplers/kernel/TextScan.h"

#include <array>

namespace lumetra {

using namespace textscan;

std::optional<CPUTicks> parseProcStatCPULine(std::string_view text) {
    std::string_view line = nextLine(text);
    if (nextField(line) != "cpu")
        return std::nullopt;

    enum Column { user, nice, system, idle, iowait, irq, softirq, steal, columnCount };
    std::array<std::uint64_t, columnCount> values{};
    int parsed = 0;
    for (; parsed < columnCount; ++parsed) {
        const std::string_view field = nextField(line);
        if (field.empty())
            break;
        const auto value = parseUnsigned(field);
        if (!value)
            return std::nullopt;
        values[static_cast<std::size_t>(parsed)] = *value;
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

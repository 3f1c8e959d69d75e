#include "samplers/cpu/CPUTicks.h"

#include "samplers/kernel/TextScan.h"

#include <array>

namespace lumetra {

using namespace textscan;

namespace {

// The tick columns after a "cpu" or "cpuN" label, one pass over the characters: this runs
// every tick for every core, and a line has ten numbers. `p` is left after the line's last
// number.
std::optional<CPUTicks> parseTickColumns(const char*& p, const char* const end) {
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

const char* endOfLine(const char* p, const char* const end) {
    while (p != end && *p != '\n')
        ++p;
    return p;
}

} // namespace

std::optional<CPUTicks> parseProcStatCPULine(std::string_view text) {
    // "cpu" and a blank: the aggregate line, not "cpu0".
    if (text.size() < 4 || text.substr(0, 3) != "cpu" || !isBlank(text[3]))
        return std::nullopt;
    const char* p = text.data() + 3;
    return parseTickColumns(p, text.data() + text.size());
}

void parseProcStatCPULines(std::string_view text, ProcStatCPULines& lines) {
    lines.cores.clear();
    lines.complete = false;
    lines.total = parseProcStatCPULine(text);
    if (!lines.total)
        return;
    const char* const end = text.data() + text.size();
    const char* p = endOfLine(text.data(), end);
    while (p != end) {
        ++p; // the newline
        if (end - p < 3)
            return; // cut short, or the file ends here: the reader knows which
        if (p[0] != 'c' || p[1] != 'p' || p[2] != 'u') {
            lines.complete = true; // the first other line ("intr"): every cpu line is here
            return;
        }
        p += 3;
        unsigned index = 0;
        const char* const digits = p;
        for (; p != end && *p >= '0' && *p <= '9' && p - digits < 9; ++p)
            index = index * 10 + static_cast<unsigned>(*p - '0');
        const char* const lineEnd = endOfLine(p, end);
        if (p != digits && p != end && isBlank(*p)) {
            if (const auto ticks = parseTickColumns(p, lineEnd))
                lines.cores.push_back({index, *ticks});
        }
        p = lineEnd;
    }
    // The text ended inside the cpu lines: whole only if the file ended there too, which
    // the reader knows from the size of its read.
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

namespace lumetra {

std::vector<double> coreUsagesBetween(const std::vector<CoreTicks>& previous,
                                      const std::vector<CoreTicks>& current) {
    std::vector<double> usages;
    usages.reserve(current.size());
    // Both lists are in ascending core order, so one walk pairs them.
    auto before = previous.begin();
    for (const CoreTicks& core : current) {
        while (before != previous.end() && before->index < core.index)
            ++before;
        if (before != previous.end() && before->index == core.index)
            usages.push_back(usageBetween(before->ticks, core.ticks));
    }
    return usages;
}

} // namespace lumetra

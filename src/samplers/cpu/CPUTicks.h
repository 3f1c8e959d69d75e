#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace lumetra {

// The four cumulative tick counters the usage is computed from.
struct CPUTicks {
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t nice = 0;

    bool operator==(const CPUTicks&) const = default;
};

// Parses the aggregate "cpu" line at the start of /proc/stat:
//   user nice system idle [iowait irq softirq steal guest guest_nice]
// system = system + irq + softirq + steal, idle = idle + iowait. guest and guest_nice are
// already inside user and nice, so they are not added again. Kernels before 2.6 give only
// the first four fields; missing later fields count as 0.
std::optional<CPUTicks> parseProcStatCPULine(std::string_view text);

// One core's counters, by its number in "cpuN".
struct CoreTicks {
    unsigned index = 0;
    CPUTicks ticks;

    bool operator==(const CoreTicks&) const = default;
};

// The "cpu" line and the "cpuN" lines after it, as one read of /proc/stat gives them.
struct ProcStatCPULines {
    std::optional<CPUTicks> total;
    std::vector<CoreTicks> cores; // in the file's order; offline cores have no line
    // False when the text ended inside the cpu lines: a read cut short at its limit.
    bool complete = false;
};

// Parses the start of /proc/stat into `lines`, reusing its storage (this runs every tick).
// A per-core line that does not parse is left out; the aggregate line's rules are those of
// parseProcStatCPULine.
void parseProcStatCPULines(std::string_view text, ProcStatCPULines& lines);

// Busy share of the ticks between two samples, in percent, clamped to 0..100. A counter that
// went backwards contributes 0 for the interval.
double usageBetween(const CPUTicks& previous, const CPUTicks& current);

// Each core's usage between two readings, for the cores present in both (a core taken
// offline has no line; one brought online has no baseline yet), in the later reading's order.
std::vector<double> coreUsagesBetween(const std::vector<CoreTicks>& previous,
                                      const std::vector<CoreTicks>& current);

} // namespace lumetra

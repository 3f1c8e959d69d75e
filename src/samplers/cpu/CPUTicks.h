#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

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

// Busy share of the ticks between two samples, in percent, clamped to 0..100. A counter that
// went backwards contributes 0 for the interval.
double usageBetween(const CPUTicks& previous, const CPUTicks& current);

} // namespace lumetra

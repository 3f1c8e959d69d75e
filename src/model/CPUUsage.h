#pragma once

#include <vector>

namespace lumetra {

// CPU usage over one interval, in percent (0 to 100): the whole machine, and each core that
// was online at both ends of the interval, in /proc/stat's order.
struct CPUUsage {
    double total = 0;
    std::vector<double> cores;

    bool operator==(const CPUUsage&) const = default;
};

} // namespace lumetra

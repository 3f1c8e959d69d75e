#pragma once

#include <cstdint>

namespace lumetra {

// How far a cumulative kernel counter moved forward. A counter that went back (it wrapped,
// was reset, or a device behind the sum went away) moved nowhere for that interval.
inline double forwardDifference(std::uint64_t previous, std::uint64_t current) {
    return current >= previous ? static_cast<double>(current - previous) : 0.0;
}

} // namespace lumetra

#pragma once

#include "model/Instant.h"

#include <cstdint>

namespace lumetra {

// Cumulative byte counters summed over the counted interfaces at one instant.
struct NetworkCounterSample {
    Instant timestamp;
    std::uint64_t bytesReceived = 0;
    std::uint64_t bytesSent = 0;

    bool operator==(const NetworkCounterSample&) const = default;
};

// Download and upload rates in bytes per second.
struct NetworkRates {
    double download = 0;
    double upload = 0;

    bool operator==(const NetworkRates&) const = default;
};

} // namespace lumetra

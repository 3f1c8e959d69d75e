#pragma once

#include "model/Instant.h"

#include <QStringList>

#include <cstdint>

namespace lumetra {

// Cumulative byte counters summed over the counted interfaces at one instant.
struct NetworkCounterSample {
    Instant timestamp;
    std::uint64_t bytesReceived = 0;
    std::uint64_t bytesSent = 0;
    QStringList interfaces = {}; // the counted interfaces, by name

    bool operator==(const NetworkCounterSample&) const = default;
};

// Download and upload rates in bytes per second.
struct NetworkRates {
    double download = 0;
    double upload = 0;
    QStringList interfaces = {}; // those counted in the later of the two samples

    bool operator==(const NetworkRates&) const = default;
};

} // namespace lumetra

#pragma once

#include "model/Instant.h"

#include <QStringList>

#include <cstdint>

namespace lumetra {

// Cumulative bytes read from and written to the counted disks, summed, at one instant.
struct DiskIOCounterSample {
    Instant timestamp;
    std::uint64_t bytesRead = 0;
    std::uint64_t bytesWritten = 0;
    QStringList devices = {}; // the counted disks, by kernel name ("nvme0n1", "sda")

    bool operator==(const DiskIOCounterSample&) const = default;
};

// Read and write throughput in bytes per second.
struct DiskIORates {
    double read = 0;
    double write = 0;
    QStringList devices = {}; // those counted in the later of the two samples

    bool operator==(const DiskIORates&) const = default;
};

} // namespace lumetra

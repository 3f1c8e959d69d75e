#pragma once

#include "model/DiskIOCounterSample.h"

#include <optional>

namespace lumetra {

class DiskIOProviding {
public:
    virtual ~DiskIOProviding() = default;

    // The summed byte counters of the counted disks; nothing when they cannot be read.
    virtual std::optional<DiskIOCounterSample> currentCounters() = 0;

    // Throughput between two samples, by the network rates' rules: nothing when the interval
    // is not positive; a counter that went backwards (a disk removed, a counter reset or
    // wrapped) gives 0 for that direction; a long interval gives its average.
    static std::optional<DiskIORates> rates(const DiskIOCounterSample& from,
                                            const DiskIOCounterSample& to);
};

} // namespace lumetra

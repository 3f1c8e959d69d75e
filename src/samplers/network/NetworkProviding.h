#pragma once

#include "model/NetworkCounterSample.h"

#include <optional>

namespace lumetra {

class NetworkProviding {
public:
    virtual ~NetworkProviding() = default;
    // The summed byte counters of the counted interfaces; nothing when they cannot be read.
    virtual std::optional<NetworkCounterSample> currentCounters() = 0;

    // Rates between two samples: nothing when the interval is not positive; a counter that
    // went backwards (wrapped, or an interface vanished) gives 0 for that direction.
    static std::optional<NetworkRates> rates(const NetworkCounterSample& from,
                                             const NetworkCounterSample& to);
};

} // namespace lumetra

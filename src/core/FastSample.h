#pragma once

#include "model/MemoryPressureLevel.h"
#include "model/NetworkCounterSample.h"
#include "samplers/memory/MemorySnapshot.h"

#include <optional>

namespace lumetra {

// Everything one tick of the fast loop read, handed to the sink in one piece. A reading that
// failed (or, for rates, had no baseline yet) is empty.
struct FastSample {
    std::optional<double> cpuUsage;
    std::optional<MemorySnapshot> memory;
    MemoryPressureLevel pressure = MemoryPressureLevel::normal;
    std::optional<NetworkRates> network;
};

} // namespace lumetra

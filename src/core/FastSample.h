#pragma once

#include "model/CPUUsage.h"
#include "model/DiskIOCounterSample.h"
#include "model/MemoryPressureLevel.h"
#include "model/NetworkCounterSample.h"
#include "samplers/memory/MemorySnapshot.h"

#include <optional>

namespace lumetra {

// Everything one tick of the fast loop read, handed to the sink in one piece. A reading that
// failed (or, for rates, had no baseline yet) is empty.
struct FastSample {
    std::optional<CPUUsage> cpu = std::nullopt;
    std::optional<MemorySnapshot> memory = std::nullopt;
    MemoryPressureLevel pressure = MemoryPressureLevel::normal;
    std::optional<NetworkRates> network = std::nullopt;
    std::optional<DiskIORates> diskIO = std::nullopt;
};

} // namespace lumetra

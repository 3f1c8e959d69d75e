#pragma once

#include "model/MemoryPressureLevel.h"
#include "samplers/memory/MemorySnapshot.h"

#include <optional>

namespace lumetra {

class MemoryProviding {
public:
    virtual ~MemoryProviding() = default;
    // Nothing when the reading failed.
    virtual std::optional<MemorySnapshot> currentSnapshot() = 0;
    // The latest memory-pressure level.
    virtual MemoryPressureLevel pressure() = 0;
};

} // namespace lumetra

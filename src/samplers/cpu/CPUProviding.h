#pragma once

#include "model/CPUUsage.h"

#include <optional>

namespace lumetra {

class CPUProviding {
public:
    virtual ~CPUProviding() = default;

    // Usage since the previous successful call, of the whole machine and of each core;
    // nothing on the first call (it only takes the baseline) and on any failure. Never throws.
    virtual std::optional<CPUUsage> currentUsage() = 0;
};

} // namespace lumetra

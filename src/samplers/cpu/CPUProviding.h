#pragma once

#include <optional>

namespace lumetra {

class CPUProviding {
public:
    virtual ~CPUProviding() = default;
    // Whole-machine usage in percent, 0 to 100, since the previous successful call; nothing
    // on the first call (it only takes the baseline) and on any failure. Never throws.
    virtual std::optional<double> currentUsage() = 0;
};

} // namespace lumetra

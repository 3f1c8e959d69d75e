#pragma once

namespace lumetra {

class CPUProviding {
public:
    virtual ~CPUProviding() = default;
    // Whole-machine usage in percent, 0 to 100, since the previous call; 0 on the first call
    // and on any failure. Never throws.
    virtual double currentUsage() = 0;
};

} // namespace lumetra

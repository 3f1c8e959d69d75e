#pragma once

#include "model/TemperatureReading.h"

namespace lumetra {

class TemperatureProviding {
public:
    virtual ~TemperatureProviding() = default;
    // Never fails: no sensor gives an absent temperature and `unavailable`.
    virtual TemperatureReading currentReading() = 0;
};

} // namespace lumetra

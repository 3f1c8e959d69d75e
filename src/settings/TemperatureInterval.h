#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// Period of the slow sampling loop (temperature), in seconds. One step slower than
// the update interval because reading temperature costs more.
enum class TemperatureInterval { one, two, five, ten };

template <>
struct EnumTraits<TemperatureInterval> {
    static constexpr const char* context = "TemperatureInterval";
    static constexpr std::array cases{
        EnumCase<TemperatureInterval, double>{TemperatureInterval::one, 1.0,
                                              QT_TRANSLATE_NOOP("TemperatureInterval", "1 s")},
        EnumCase<TemperatureInterval, double>{TemperatureInterval::two, 2.0,
                                              QT_TRANSLATE_NOOP("TemperatureInterval", "2 s")},
        EnumCase<TemperatureInterval, double>{TemperatureInterval::five, 5.0,
                                              QT_TRANSLATE_NOOP("TemperatureInterval", "5 s")},
        EnumCase<TemperatureInterval, double>{TemperatureInterval::ten, 10.0,
                                              QT_TRANSLATE_NOOP("TemperatureInterval", "10 s")},
    };
};

// The loop period handed to the scheduler: the raw value itself.
constexpr double seconds(TemperatureInterval interval) {
    return rawValue(interval);
}

} // namespace lumetra

#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// Period of the fast sampling loop (CPU, memory, network), in seconds.
enum class UpdateInterval { half, one, two, five };

template <>
struct EnumTraits<UpdateInterval> {
    static constexpr const char* context = "UpdateInterval";
    static constexpr std::array cases{
        EnumCase<UpdateInterval, double>{UpdateInterval::half, 0.5,
                                         QT_TRANSLATE_NOOP("UpdateInterval", "0.5 s")},
        EnumCase<UpdateInterval, double>{UpdateInterval::one, 1.0,
                                         QT_TRANSLATE_NOOP("UpdateInterval", "1 s")},
        EnumCase<UpdateInterval, double>{UpdateInterval::two, 2.0,
                                         QT_TRANSLATE_NOOP("UpdateInterval", "2 s")},
        EnumCase<UpdateInterval, double>{UpdateInterval::five, 5.0,
                                         QT_TRANSLATE_NOOP("UpdateInterval", "5 s")},
    };
};

// The loop period handed to the scheduler: the raw value itself.
constexpr double seconds(UpdateInterval interval) {
    return rawValue(interval);
}

} // namespace lumetra

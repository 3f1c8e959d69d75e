#include "model/TemperatureText.h"

#include <cassert>
#include <cmath>
#include <cstdint>

namespace lumetra {

QString temperatureText(double celsius) {
    assert(std::isfinite(celsius));
    // std::llround rounds halves away from zero; + 0.0 folds -0 into 0.
    const std::int64_t whole = std::llround(celsius + 0.0);
    return QString::number(whole) + QStringLiteral(" °C");
}

} // namespace lumetra

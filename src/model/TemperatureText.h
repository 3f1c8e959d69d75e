#pragma once

#include <QString>

namespace lumetra {

// "46 °C" for 45.5: rounded half away from zero. Callers pass only present, finite values.
QString temperatureText(double celsius);

} // namespace lumetra

#pragma once

#include "model/TopApplication.h"

#include <QString>

namespace lumetra {

// "14 processes" ("1 process"), in the user's language.
QString processCountText(int count);

// A group's CPU as top shows it, percent of one core: "112 %".
QString coreShareText(double percentOfOneCore);

// "112 % of one core · 28 % of the machine" for the list's tooltips.
QString cpuShareTooltip(double percentOfOneCore, int logicalCpuCount);

// One line of a tooltip: "Firefox · 14 processes: 12 % CPU, 1.2 GB", or without the CPU
// figure while there is none yet.
QString topApplicationLine(const TopApplication& application, bool cpuValid);

} // namespace lumetra

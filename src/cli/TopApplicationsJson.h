#pragma once

#include "cli/JsonWriter.h"
#include "model/TopApplications.h"

namespace lumetra {

// "topApplications": the `count` groups using the most CPU (by memory while there is no CPU
// figure yet), each with name, appId (null for a lone process), processCount, cpuPercent
// (of one core; null before the first interval) and residentBytes.
void writeTopApplicationsJson(JsonWriter& json, const TopApplications& top, int count);

} // namespace lumetra

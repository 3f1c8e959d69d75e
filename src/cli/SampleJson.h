#pragma once

#include "cli/JsonWriter.h"
#include "model/DiskVolume.h"
#include "model/IsoTimestamp.h"
#include "model/SystemMetrics.h"

#include <functional>
#include <string>

namespace lumetra {

// The sample's fields under their own names, then `disks` and `label`, as one object;
// `more` adds its fields at the end (the top applications).
void writeSampleJson(JsonWriter& json, const SystemMetrics& metrics, const DiskVolumeList& disks,
                     const QString& label, const std::function<void(JsonWriter&)>& more = {});

} // namespace lumetra

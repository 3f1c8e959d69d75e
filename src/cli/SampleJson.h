#pragma once

#include "cli/JsonWriter.h"
#include "model/DiskVolume.h"
#include "model/IsoTimestamp.h"
#include "model/SystemMetrics.h"

#include <string>

namespace lumetra {

// The sample's fields under their own names, then `disks` and `label`, as one object.
void writeSampleJson(JsonWriter& json, const SystemMetrics& metrics, const DiskVolumeList& disks,
                     const QString& label);

} // namespace lumetra

#pragma once

#include "cli/JsonWriter.h"
#include "model/DiskVolume.h"
#include "model/SystemMetrics.h"

#include <string>

namespace lumetra {

// "2026-11-22T05:01:02.123Z": ISO 8601, UTC, milliseconds.
std::string isoTimestamp(Instant instant);

// The sample's fields under their own names, then `disks` and `label`, as one object.
void writeSampleJson(JsonWriter& json, const SystemMetrics& metrics, const DiskVolumeList& disks,
                     const QString& label);

} // namespace lumetra

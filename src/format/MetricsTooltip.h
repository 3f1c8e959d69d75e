#pragma once

#include "model/DiskVolume.h"
#include "model/SystemMetrics.h"

#include <QString>

namespace lumetra {

// Every metric, one per line, whatever the label shows: the panel item's tooltip and the
// status bars' hover text.
QString metricsTooltip(const SystemMetrics& metrics, const DiskVolumeList& disks);

} // namespace lumetra

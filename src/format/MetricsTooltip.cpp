#include "format/MetricsTooltip.h"

#include "format/MetricCatalogue.h"
#include "format/ValueFormatters.h"

#include <QCoreApplication>

namespace lumetra {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("MetricsTooltip", text);
}

} // namespace

QString metricsTooltip(const SystemMetrics& metrics, const DiskVolumeList& disks) {
    QStringList lines;
    for (const MetricDescription& row : metricCatalogue())
        lines << row.tooltip(metrics);
    for (const DiskVolume& disk : disks) {
        lines << tr("Disk") + u' ' + disk.name + QStringLiteral(": ") +
                     tr("%1 free of %2")
                         .arg(formatBytes(static_cast<std::uint64_t>(disk.availableCapacity)),
                              formatBytes(static_cast<std::uint64_t>(disk.totalCapacity)));
    }
    return lines.join(u'\n');
}

} // namespace lumetra

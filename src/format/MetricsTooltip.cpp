#include "format/MetricsTooltip.h"

#include "format/ValueFormatters.h"
#include "model/TemperatureText.h"

#include <QCoreApplication>

namespace lumetra {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("MetricsTooltip", text);
}

} // namespace

QString metricsTooltip(const SystemMetrics& metrics, const DiskVolumeList& disks) {
    QStringList lines;
    lines << tr("CPU") + u' ' + wholePercentText(metrics.cpuUsage);
    lines << tr("Memory") + u' ' + formatUsedOverTotal(metrics.memoryUsed, metrics.memoryTotal) +
                 QStringLiteral(" (") + wholePercentText(metrics.memoryPercentage) + u')';
    lines << tr("Memory pressure") + u' ' + QString::fromLatin1(rawValue(metrics.memoryPressure));
    QString temperature =
        tr("Temperature") + u' ' +
        (metrics.temperature ? temperatureText(*metrics.temperature) : tr("Unavailable"));
    if (!metrics.temperatureSources.isEmpty())
        temperature +=
            QStringLiteral(" (") + metrics.temperatureSources.join(QStringLiteral(", ")) + u')';
    lines << temperature;
    lines << tr("Thermal state") + u' ' + label(metrics.thermalState);
    lines << tr("Download") + u' ' + formatRate(metrics.downloadBytesPerSecond);
    lines << tr("Upload") + u' ' + formatRate(metrics.uploadBytesPerSecond);
    for (const DiskVolume& disk : disks) {
        lines << tr("Disk") + u' ' + disk.name + QStringLiteral(": ") +
                     tr("%1 free of %2")
                         .arg(formatBytes(static_cast<std::uint64_t>(disk.availableCapacity)),
                              formatBytes(static_cast<std::uint64_t>(disk.totalCapacity)));
    }
    return lines.join(u'\n');
}

} // namespace lumetra

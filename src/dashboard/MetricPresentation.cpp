#include "dashboard/MetricPresentation.h"

#include "format/ValueFormatters.h"
#include "model/TemperatureText.h"

#include <QCoreApplication>

#include <algorithm>

namespace lumetra {

namespace {

std::vector<double> historyValues(const MetricHistory& history) {
    const auto values = history.elements();
    return {values.begin(), values.end()};
}

} // namespace

QString percentText(double value) {
    return wholePercentText(value);
}

double temperatureLevel(double celsius) {
    return std::clamp((celsius - 20) / 80 * 100, 0.0, 100.0);
}

QString memoryDetailText(std::uint64_t used, std::uint64_t total) {
    return formatUsedOverTotal(used, total);
}

MetricPresentation cpuPresentation(const SystemMetrics& metrics, const MetricHistory& history) {
    return {QStringLiteral("cpu"), QCoreApplication::translate("MetricPresentation", "CPU"),
            QStringLiteral("cpu"), percentText(metrics.cpuUsage),
            metrics.cpuUsage,      std::nullopt,
            historyValues(history)};
}

MetricPresentation memoryPresentation(const SystemMetrics& metrics, const MetricHistory& history) {
    return {
        QStringLiteral("memory"),     QCoreApplication::translate("MetricPresentation", "Memory"),
        QStringLiteral("memorychip"), percentText(metrics.memoryPercentage),
        metrics.memoryPercentage,     memoryDetailText(metrics.memoryUsed, metrics.memoryTotal),
        historyValues(history)};
}

MetricPresentation temperaturePresentation(const SystemMetrics& metrics) {
    MetricPresentation presentation{
        QStringLiteral("temperature"),
        QCoreApplication::translate("MetricPresentation", "Temperature"),
        QStringLiteral("thermometer.medium"),
        {},
        {},
        {},
        {}};
    if (metrics.temperatureAvailability == TemperatureAvailability::exactTemperature) {
        const double celsius = metrics.temperature.value_or(0);
        presentation.valueText = temperatureText(celsius);
        presentation.percentage = temperatureLevel(celsius);
    } else {
        presentation.valueText = QCoreApplication::translate("MetricPresentation", "Unavailable");
        presentation.detailText = label(metrics.thermalState);
    }
    return presentation;
}

MetricPresentation networkPresentation(const SystemMetrics& metrics) {
    return {QStringLiteral("network"),
            QCoreApplication::translate("MetricPresentation", "Network"),
            QStringLiteral("network"),
            formatRate(metrics.downloadBytesPerSecond),
            std::nullopt,
            std::nullopt,
            {}};
}

} // namespace lumetra

#include "format/MenuBarLabel.h"

#include "format/ValueFormatters.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace lumetra {

QString separatorText(MenuBarSeparator separator) {
    switch (separator) {
    case MenuBarSeparator::space:
        return QStringLiteral("  ");
    case MenuBarSeparator::dot:
        return QStringLiteral(" · ");
    case MenuBarSeparator::verticalBar:
        return QStringLiteral(" | ");
    case MenuBarSeparator::bullet:
        return QStringLiteral(" • ");
    }
    return QStringLiteral("  ");
}

QString temperatureText(double celsius, TemperatureDisplayFormat format) {
    // Rounded half away from zero, not clamped.
    const QString degrees = QString::number(std::llround(celsius + 0.0));
    switch (format) {
    case TemperatureDisplayFormat::degreesOnly:
        return degrees + u'°';
    case TemperatureDisplayFormat::degreesWithUnit:
        return degrees + QStringLiteral("°C");
    case TemperatureDisplayFormat::labeledCPU:
        return QStringLiteral("CPU ") + degrees + QStringLiteral("°C");
    case TemperatureDisplayFormat::labeledTemp:
        return QStringLiteral("Temp ") + degrees + QStringLiteral("°C");
    }
    return degrees + u'°';
}

QString metricMark(MenuBarMetric metric) {
    switch (metric) {
    case MenuBarMetric::cpu:
        return QStringLiteral("C");
    case MenuBarMetric::memory:
        return QStringLiteral("M");
    case MenuBarMetric::temperature:
        return QStringLiteral("T");
    case MenuBarMetric::download:
        return QStringLiteral("↓");
    case MenuBarMetric::upload:
        return QStringLiteral("↑");
    }
    return {};
}

namespace {

// The memory reading without a prefix, as chips show it.
QString memoryValue(const SystemMetrics& metrics, MemoryDisplayFormat format) {
    switch (format) {
    case MemoryDisplayFormat::percentageOnly:
        return wholePercentText(metrics.memoryPercentage);
    case MemoryDisplayFormat::usedOnly:
        return formatBytes(metrics.memoryUsed);
    case MemoryDisplayFormat::usedOverTotal:
        return formatUsedOverTotal(metrics.memoryUsed, metrics.memoryTotal);
    case MemoryDisplayFormat::both:
        return formatBytes(metrics.memoryUsed) + u' ' + wholePercentText(metrics.memoryPercentage);
    }
    return {};
}

// The text line's piece for one metric; empty when the metric has nothing to show.
QString textPiece(MenuBarMetric metric, const SystemMetrics& metrics,
                  const LabelSettings& settings) {
    switch (metric) {
    case MenuBarMetric::cpu:
        return QStringLiteral("CPU ") + wholePercentText(metrics.cpuUsage);
    case MenuBarMetric::memory:
        // The slash form stands alone, without the "RAM " prefix.
        if (settings.memoryFormat == MemoryDisplayFormat::usedOverTotal)
            return memoryValue(metrics, settings.memoryFormat);
        return QStringLiteral("RAM ") + memoryValue(metrics, settings.memoryFormat);
    case MenuBarMetric::temperature:
        return metrics.temperature
                   ? temperatureText(*metrics.temperature, settings.temperatureFormat)
                   : QString();
    case MenuBarMetric::download:
        return QStringLiteral("↓ ") + formatRate(metrics.downloadBytesPerSecond);
    case MenuBarMetric::upload:
        return QStringLiteral("↑ ") + formatRate(metrics.uploadBytesPerSecond);
    }
    return {};
}

// 20 °C maps to 0 and 100 °C to 100, so the colour turns orange at 80 °C and red at 92 °C.
double temperatureScale(double celsius) {
    return std::clamp((celsius - 20) / 80 * 100, 0.0, 100.0);
}

MenuBarChipContent chip(MenuBarMetric metric, const SystemMetrics& metrics,
                        const MetricHistory& cpuHistory, const MetricHistory& memoryHistory,
                        const LabelSettings& settings) {
    constexpr int kSparklineLength = 7;
    switch (metric) {
    case MenuBarMetric::cpu:
        return {metric, wholePercentText(metrics.cpuUsage),
                sparkline(cpuHistory.elements(), kSparklineLength), metrics.cpuUsage};
    case MenuBarMetric::memory:
        return {metric, memoryValue(metrics, settings.memoryFormat),
                sparkline(memoryHistory.elements(), kSparklineLength), metrics.memoryPercentage};
    case MenuBarMetric::temperature:
        if (!metrics.temperature)
            return {metric,
                    QCoreApplication::translate("MenuBarLabel", "Unavailable"),
                    {},
                    std::nullopt};
        return {metric,
                temperatureText(*metrics.temperature, settings.temperatureFormat),
                {},
                temperatureScale(*metrics.temperature)};
    case MenuBarMetric::download:
        return {metric, formatRate(metrics.downloadBytesPerSecond), {}, std::nullopt};
    case MenuBarMetric::upload:
        return {metric, formatRate(metrics.uploadBytesPerSecond), {}, std::nullopt};
    }
    return {};
}

} // namespace

QString labelText(const SystemMetrics& metrics, const LabelSettings& settings) {
    const QString separator = separatorText(settings.separator);
    QString line;
    bool first = true;
    for (MenuBarMetric metric : settings.displayedMetrics) {
        const QString piece = textPiece(metric, metrics, settings);
        if (piece.isEmpty())
            continue;
        if (!first)
            line += separator;
        line += piece;
        first = false;
    }
    return first ? QStringLiteral("lumetra") : line;
}

QList<MenuBarChipContent> chips(const SystemMetrics& metrics, const MetricHistory& cpuHistory,
                                const MetricHistory& memoryHistory, const LabelSettings& settings) {
    QList<MenuBarChipContent> result;
    result.reserve(settings.displayedMetrics.size());
    for (MenuBarMetric metric : settings.displayedMetrics)
        result.append(chip(metric, metrics, cpuHistory, memoryHistory, settings));
    return result;
}

QString chipText(const MenuBarChipContent& chip, MenuBarDisplayStyle style) {
    QString text = metricMark(chip.metric) + u' ';
    if (style == MenuBarDisplayStyle::compactGraph && !chip.graphText.isEmpty())
        text += chip.graphText + u' ';
    if (style == MenuBarDisplayStyle::miniBar && chip.percentage)
        text += levelBar(5, *chip.percentage) + u' ';
    return text + chip.valueText;
}

QList<LabelPiece> labelPieces(const SystemMetrics& metrics, const MetricHistory& cpuHistory,
                              const MetricHistory& memoryHistory, const LabelSettings& settings) {
    QList<LabelPiece> pieces;
    pieces.reserve(settings.displayedMetrics.size());
    for (MenuBarMetric metric : settings.displayedMetrics) {
        const MenuBarChipContent content =
            chip(metric, metrics, cpuHistory, memoryHistory, settings);
        if (settings.style != MenuBarDisplayStyle::textOnly) {
            pieces.append({metric, chipText(content, settings.style), content.percentage});
            continue;
        }
        QString text = textPiece(metric, metrics, settings);
        if (!text.isEmpty())
            pieces.append({metric, std::move(text), content.percentage});
    }
    return pieces;
}

QString labelLine(const SystemMetrics& metrics, const MetricHistory& cpuHistory,
                  const MetricHistory& memoryHistory, const LabelSettings& settings) {
    const QList<LabelPiece> pieces = labelPieces(metrics, cpuHistory, memoryHistory, settings);
    if (pieces.isEmpty())
        return QStringLiteral("lumetra");
    const QString separator = separatorText(settings.separator);
    QString line = pieces.front().text;
    for (qsizetype i = 1; i < pieces.size(); ++i)
        line += separator + pieces[i].text;
    return line;
}

} // namespace lumetra

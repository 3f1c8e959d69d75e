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
void appendMemoryValue(QString& out, const SystemMetrics& metrics, MemoryDisplayFormat format) {
    switch (format) {
    case MemoryDisplayFormat::percentageOnly:
        appendWholePercent(out, metrics.memoryPercentage);
        return;
    case MemoryDisplayFormat::usedOnly:
        appendBytes(out, metrics.memoryUsed);
        return;
    case MemoryDisplayFormat::usedOverTotal:
        appendUsedOverTotal(out, metrics.memoryUsed, metrics.memoryTotal);
        return;
    case MemoryDisplayFormat::both:
        appendBytes(out, metrics.memoryUsed);
        out.append(u' ');
        appendWholePercent(out, metrics.memoryPercentage);
        return;
    }
}

QString memoryValue(const SystemMetrics& metrics, MemoryDisplayFormat format) {
    QString text;
    text.reserve(32); // one allocation for the few pieces
    appendMemoryValue(text, metrics, format);
    return text;
}

// Appends the text line's piece for one metric; false when the metric has nothing to show.
bool appendTextPiece(QString& out, MenuBarMetric metric, const SystemMetrics& metrics,
                     const LabelSettings& settings) {
    switch (metric) {
    case MenuBarMetric::cpu:
        out.append(QLatin1StringView("CPU "));
        appendWholePercent(out, metrics.cpuUsage);
        return true;
    case MenuBarMetric::memory:
        // The slash form stands alone, without the "RAM " prefix.
        if (settings.memoryFormat != MemoryDisplayFormat::usedOverTotal)
            out.append(QLatin1StringView("RAM "));
        appendMemoryValue(out, metrics, settings.memoryFormat);
        return true;
    case MenuBarMetric::temperature:
        if (!metrics.temperature)
            return false;
        out.append(temperatureText(*metrics.temperature, settings.temperatureFormat));
        return true;
    case MenuBarMetric::download:
        out.append(QStringView(u"↓ "));
        appendRate(out, metrics.downloadBytesPerSecond);
        return true;
    case MenuBarMetric::upload:
        out.append(QStringView(u"↑ "));
        appendRate(out, metrics.uploadBytesPerSecond);
        return true;
    }
    return false;
}

// 20 °C maps to 0 and 100 °C to 100, so the colour turns orange at 80 °C and red at 92 °C.
double temperatureScale(double celsius) {
    return std::clamp((celsius - 20) / 80 * 100, 0.0, 100.0);
}

// The level a metric's colour and bar follow, if it has one.
std::optional<double> levelPercentage(MenuBarMetric metric, const SystemMetrics& metrics) {
    switch (metric) {
    case MenuBarMetric::cpu:
        return metrics.cpuUsage;
    case MenuBarMetric::memory:
        return metrics.memoryPercentage;
    case MenuBarMetric::temperature:
        if (!metrics.temperature)
            return std::nullopt;
        return temperatureScale(*metrics.temperature);
    case MenuBarMetric::download:
    case MenuBarMetric::upload:
        return std::nullopt;
    }
    return std::nullopt;
}

MenuBarChipContent chip(MenuBarMetric metric, const SystemMetrics& metrics,
                        const MetricHistory& cpuHistory, const MetricHistory& memoryHistory,
                        const LabelSettings& settings) {
    constexpr int kSparklineLength = 7;
    const std::optional<double> percentage = levelPercentage(metric, metrics);
    switch (metric) {
    case MenuBarMetric::cpu:
        return {metric, wholePercentText(metrics.cpuUsage),
                sparkline(cpuHistory.elements(), kSparklineLength), percentage};
    case MenuBarMetric::memory:
        return {metric, memoryValue(metrics, settings.memoryFormat),
                sparkline(memoryHistory.elements(), kSparklineLength), percentage};
    case MenuBarMetric::temperature:
        if (!metrics.temperature)
            return {
                metric, QCoreApplication::translate("MenuBarLabel", "Unavailable"), {}, percentage};
        return {metric,
                temperatureText(*metrics.temperature, settings.temperatureFormat),
                {},
                percentage};
    case MenuBarMetric::download:
        return {metric, formatRate(metrics.downloadBytesPerSecond), {}, percentage};
    case MenuBarMetric::upload:
        return {metric, formatRate(metrics.uploadBytesPerSecond), {}, percentage};
    }
    return {};
}

} // namespace

QString labelText(const SystemMetrics& metrics, const LabelSettings& settings) {
    const QString separator = separatorText(settings.separator);
    QString line;
    line.reserve(96);
    for (MenuBarMetric metric : settings.displayedMetrics) {
        const qsizetype before = line.size();
        if (before > 0)
            line += separator;
        if (!appendTextPiece(line, metric, metrics, settings))
            line.truncate(before);
    }
    return line.isEmpty() ? QStringLiteral("lumetra") : line;
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
        if (settings.style != MenuBarDisplayStyle::textOnly) {
            const MenuBarChipContent content =
                chip(metric, metrics, cpuHistory, memoryHistory, settings);
            pieces.append({metric, chipText(content, settings.style), content.percentage});
            continue;
        }
        // The text style needs no chip: its graphs and value texts would go unused.
        QString text;
        if (appendTextPiece(text, metric, metrics, settings))
            pieces.append({metric, std::move(text), levelPercentage(metric, metrics)});
    }
    return pieces;
}

QString labelLine(const SystemMetrics& metrics, const MetricHistory& cpuHistory,
                  const MetricHistory& memoryHistory, const LabelSettings& settings) {
    // The text style joins the same pieces straight into one string.
    if (settings.style == MenuBarDisplayStyle::textOnly)
        return labelText(metrics, settings);
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

#include "format/MenuBarLabel.h"

#include "format/MetricCatalogue.h"
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
    return QString::fromUtf16(describe(metric).mark);
}

namespace {

// Appends the text line's piece for one metric; false when the metric has nothing to show.
bool appendTextPiece(QString& out, const MetricDescription& row, const SystemMetrics& metrics,
                     const LabelSettings& settings) {
    const qsizetype before = out.size();
    out.append(QStringView(row.prefix));
    const qsizetype prefixEnd = out.size();
    switch (row.appendValue(out, metrics, settings)) {
    case MetricValueShape::missing:
        out.truncate(before);
        return false;
    case MetricValueShape::alone:
        out.remove(before, prefixEnd - before);
        return true;
    case MetricValueShape::prefixed:
        return true;
    }
    return true;
}

MenuBarChipContent chip(const MetricDescription& row, const SystemMetrics& metrics,
                        const MetricHistories& histories, const LabelSettings& settings) {
    constexpr int kSparklineLength = 7;
    MenuBarChipContent content{row.metric, {}, {}, row.level(metrics)};
    content.valueText.reserve(32); // one allocation for the few pieces
    if (row.appendValue(content.valueText, metrics, settings) == MetricValueShape::missing)
        content.valueText = QCoreApplication::translate("MenuBarLabel", "Unavailable");
    if (row.history)
        content.graphText = sparkline((histories.*row.history).elements(), kSparklineLength);
    return content;
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
        if (!appendTextPiece(line, describe(metric), metrics, settings))
            line.truncate(before);
    }
    return line.isEmpty() ? QStringLiteral("lumetra") : line;
}

QList<MenuBarChipContent> chips(const SystemMetrics& metrics, const MetricHistories& histories,
                                const LabelSettings& settings) {
    QList<MenuBarChipContent> result;
    result.reserve(settings.displayedMetrics.size());
    for (MenuBarMetric metric : settings.displayedMetrics)
        result.append(chip(describe(metric), metrics, histories, settings));
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

QList<LabelPiece> labelPieces(const SystemMetrics& metrics, const MetricHistories& histories,
                              const LabelSettings& settings) {
    QList<LabelPiece> pieces;
    pieces.reserve(settings.displayedMetrics.size());
    for (MenuBarMetric metric : settings.displayedMetrics) {
        const MetricDescription& row = describe(metric);
        if (settings.style != MenuBarDisplayStyle::textOnly) {
            const MenuBarChipContent content = chip(row, metrics, histories, settings);
            pieces.append({metric, chipText(content, settings.style), content.percentage});
            continue;
        }
        // The text style needs no chip: its graphs and value texts would go unused.
        QString text;
        if (appendTextPiece(text, row, metrics, settings))
            pieces.append({metric, std::move(text), row.level(metrics)});
    }
    return pieces;
}

QString labelLine(const SystemMetrics& metrics, const MetricHistories& histories,
                  const LabelSettings& settings) {
    // The text style joins the same pieces straight into one string.
    if (settings.style == MenuBarDisplayStyle::textOnly)
        return labelText(metrics, settings);
    const QList<LabelPiece> pieces = labelPieces(metrics, histories, settings);
    if (pieces.isEmpty())
        return QStringLiteral("lumetra");
    const QString separator = separatorText(settings.separator);
    QString line = pieces.front().text;
    for (qsizetype i = 1; i < pieces.size(); ++i)
        line += separator + pieces[i].text;
    return line;
}

} // namespace lumetra

#pragma once

#include "format/LabelSettings.h"
#include "format/MenuBarChipContent.h"
#include "model/MetricHistories.h"
#include "model/SystemMetrics.h"

#include <QList>
#include <QString>

namespace lumetra {

// The text placed between two metrics: "  ", " · ", " | " or " • ".
QString separatorText(MenuBarSeparator separator);

// The one-character mark of a metric where no icon is drawn (C, M, T, ↓, ↑).
QString metricMark(MenuBarMetric metric);

// The textOnly label: the displayed metrics joined by the separator, or "lumetra" when
// nothing can be shown. A missing temperature is left out.
QString labelText(const SystemMetrics& metrics, const LabelSettings& settings);

// One chip per displayed metric, for the icon, graph and bar styles.
QList<MenuBarChipContent> chips(const SystemMetrics& metrics, const MetricHistories& histories,
                                const LabelSettings& settings);

// A chip as text: mark, a space, the graph (compactGraph) or bar (miniBar) and a space,
// then the value — what the view form and text-only panels show.
QString chipText(const MenuBarChipContent& chip, MenuBarDisplayStyle style);

// One metric's part of a text line: its text in the current style and its level.
struct LabelPiece {
    MenuBarMetric metric = MenuBarMetric::cpu;
    QString text;
    std::optional<double> percentage;
};

// The pieces of the label line in any style: text pieces for textOnly (a missing temperature
// left out), chips in text form for the other styles.
QList<LabelPiece> labelPieces(const SystemMetrics& metrics, const MetricHistories& histories,
                              const LabelSettings& settings);

// The label as one line of text in any style: labelText for textOnly, else the chips in
// text form joined by the separator.
QString labelLine(const SystemMetrics& metrics, const MetricHistories& histories,
                  const LabelSettings& settings);

} // namespace lumetra

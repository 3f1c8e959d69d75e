#pragma once

#include "model/MetricHistories.h"
#include "model/MetricHistory.h"
#include "model/SystemMetrics.h"
#include "settings/MenuBarMetric.h"

#include <QString>

#include <optional>
#include <vector>

namespace lumetra {

// What a card draws for one metric, rebuilt from the latest sample on every redraw.
// Widget-free, so the builders could move below the views.
struct MetricPresentation {
    QString id;          // "cpu", "memory", "temperature", "network"
    QString title;       // localised
    QString systemImage; // the symbol's name, looked up by DashboardIcons
    QString valueText;
    std::optional<double> percentage; // 0..100; none when the metric has no level
    std::optional<QString> detailText;
    std::vector<double> history; // oldest first, 0..100
    // The levels of its parts (the CPU's cores), 0..100 each, drawn as a row of small bars.
    std::vector<double> parts;
    // Lines of related figures shown inside the card (swap in the memory card): title, value.
    std::vector<std::pair<QString, QString>> lines;

    bool operator==(const MetricPresentation&) const = default;
};

// The card of `metric` (a levelCard row, or the first of a rate pair), with the lines of the
// metrics the catalogue places inside it.
MetricPresentation presentation(MenuBarMetric metric, const SystemMetrics& metrics,
                                const MetricHistories& histories);
// The level cards, in catalogue order.
std::vector<MetricPresentation> levelCards(const SystemMetrics& metrics,
                                           const MetricHistories& histories);

MetricPresentation cpuPresentation(const SystemMetrics& metrics, const MetricHistory& history);
MetricPresentation memoryPresentation(const SystemMetrics& metrics, const MetricHistory& history);
// The reading when the sample has an exact temperature, else "Unavailable" with the thermal
// state's name as detail.
MetricPresentation temperaturePresentation(const SystemMetrics& metrics);
// Only the grid shows it: the download rate.
MetricPresentation networkPresentation(const SystemMetrics& metrics);

// "38%": clamped to 0..100, rounded half away from zero.
QString percentText(double value);
// "7.3 GB / 16 GB".
QString memoryDetailText(std::uint64_t used, std::uint64_t total);

} // namespace lumetra

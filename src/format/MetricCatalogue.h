#pragma once

#include "format/LabelSettings.h"
#include "model/MetricHistories.h"
#include "model/SystemMetrics.h"
#include "settings/MenuBarMetric.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <span>

namespace lumetra {

// Where a figure goes when a sample is written out field by field (the terminal mode's JSON).
// Keys are the sample's field names.
class FigureWriter {
public:
    virtual ~FigureWriter() = default;
    // An empty number is written as null.
    virtual void number(const char* key, std::optional<double> value) = 0;
    virtual void count(const char* key, std::optional<std::uint64_t> value) = 0;
    virtual void word(const char* key, std::string_view value) = 0;
    virtual void names(const char* key, const QStringList& values) = 0;
    virtual void numbers(const char* key, std::span<const double> values) = 0;
};

// How a metric's value reads in the label: with its prefix ("CPU 14%"), standing alone
// ("7.3 GB / 16 GB", "No swap"), or not at all (nothing was read).
enum class MetricValueShape { missing, prefixed, alone };

// Where the dashboard shows a metric: a card of its own with a level, a line in another
// metric's card, one of a pair of rates in a rates card.
enum class DashboardPlace { levelCard, lineInCard, rate };

// One displayable metric: everything the label, chips, tooltip, label image, live icon,
// dashboard, settings list, welcome choices and the terminal mode need to know about it.
// Views iterate the catalogue instead of switching over metrics.
struct MetricDescription {
    MenuBarMetric metric;
    // The name in settings, tooltip and dashboard: translated in the "MenuBarMetric" context.
    const char* name;
    // The one-character mark where no icon is drawn (C, M, T, ↓, ↑).
    const char16_t* mark;
    // Before the value in the text label ("CPU ", "RAM ").
    const char16_t* prefix;
    // The symbol's name in the icon set.
    const char* icon;
    // The welcome flow's box that switches it on (translated in the welcome view's context)
    // and that box's object name: metrics that go together (both network directions) share
    // one box.
    const char* choice;
    const char* choiceName;
    // Its place in the dashboard; for lineInCard the card's metric, for rate the card's.
    DashboardPlace place;
    MenuBarMetric host;
    // The title and symbol of the card it heads (levelCard, or the first of a rate pair),
    // translated in the "MetricPresentation" context.
    const char* cardTitle;
    const char* cardIcon;
    // Whether the level follows 0..100 % of something (and so takes the level colours and
    // bars in the square icon): the level is then `level`.
    bool scaled;
    // The graph's member of the histories, or none.
    MetricHistory MetricHistories::*history;

    // The value as the label shows it; false when there is nothing to show.
    MetricValueShape (*appendValue)(QString& out, const SystemMetrics& metrics,
                                    const LabelSettings& settings);
    // The level 0..100 its colour and bar follow; none without a scale or a value.
    std::optional<double> (*level)(const SystemMetrics& metrics);
    // The level this sample adds to the graph: none when the figure was not read now.
    std::optional<double> (*sampled)(const SystemMetrics& metrics);
    // Sets the figure to its widest form, for the label's width guide.
    void (*widen)(SystemMetrics& metrics);
    // Writes the figure's fields for the JSON line.
    void (*write)(FigureWriter& out, const SystemMetrics& metrics);
    // The tooltip's line or lines, each starting with the metric's name.
    QString (*tooltip)(const SystemMetrics& metrics);
    // The level its dashboard card draws; none without a scale or a value.
    std::optional<double> (*cardLevel)(const SystemMetrics& metrics);
    // The dashboard's value and the detail under it (or the line's value, for lineInCard).
    QString (*cardValue)(const SystemMetrics& metrics);
    std::optional<QString> (*cardDetail)(const SystemMetrics& metrics);
    // Levels of the parts the figure is made of, 0..100 each (the cores of the CPU), drawn as
    // a row of small bars in its card; empty for none.
    std::span<const double> (*parts)(const SystemMetrics& metrics);
};

// Every metric, in the default order.
std::span<const MetricDescription> metricCatalogue();
const MetricDescription& describe(MenuBarMetric metric);

// The translated name ("CPU", "Memory", …).
QString metricName(MenuBarMetric metric);

// The history behind a metric's graph, or nullptr.
const MetricHistory* historyOf(MenuBarMetric metric, const MetricHistories& histories);

// Appends the figures of `metrics` each row wants written, in catalogue order.
void writeFigures(FigureWriter& out, const SystemMetrics& metrics);

// 20 °C maps to 0 and 100 °C to 100, so the colour turns orange at 80 °C and red at 92 °C.
double temperatureLevel(double celsius);

} // namespace lumetra

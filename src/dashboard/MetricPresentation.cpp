#include "dashboard/MetricPresentation.h"

#include "format/MetricCatalogue.h"
#include "format/ValueFormatters.h"

#include <QCoreApplication>

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

QString memoryDetailText(std::uint64_t used, std::uint64_t total) {
    return formatUsedOverTotal(used, total);
}

MetricPresentation presentation(MenuBarMetric metric, const SystemMetrics& metrics,
                                const MetricHistories& histories) {
    const MetricDescription& row = describe(metric);
    MetricPresentation card{QString::fromLatin1(rawValue(metric)),
                            QCoreApplication::translate("MetricPresentation", row.cardTitle),
                            QString::fromLatin1(row.cardIcon),
                            row.cardValue(metrics),
                            row.place == DashboardPlace::levelCard ? row.cardLevel(metrics)
                                                                   : std::nullopt,
                            row.cardDetail(metrics),
                            {},
                            {},
                            {}};
    if (const MetricHistory* history = historyOf(metric, histories))
        card.history = historyValues(*history);
    const std::span<const double> parts = row.parts(metrics);
    card.parts.assign(parts.begin(), parts.end());
    for (const MetricDescription& inside : metricCatalogue()) {
        if (inside.place == DashboardPlace::lineInCard && inside.host == metric)
            card.lines.emplace_back(metricName(inside.metric), inside.cardValue(metrics));
    }
    return card;
}

std::vector<MetricPresentation> levelCards(const SystemMetrics& metrics,
                                           const MetricHistories& histories) {
    std::vector<MetricPresentation> cards;
    for (const MetricDescription& row : metricCatalogue()) {
        if (row.place == DashboardPlace::levelCard)
            cards.push_back(presentation(row.metric, metrics, histories));
    }
    return cards;
}

MetricPresentation cpuPresentation(const SystemMetrics& metrics, const MetricHistory& history) {
    MetricHistories histories;
    histories.cpu = history;
    return presentation(MenuBarMetric::cpu, metrics, histories);
}

MetricPresentation memoryPresentation(const SystemMetrics& metrics, const MetricHistory& history) {
    MetricHistories histories;
    histories.memory = history;
    return presentation(MenuBarMetric::memory, metrics, histories);
}

MetricPresentation temperaturePresentation(const SystemMetrics& metrics) {
    return presentation(MenuBarMetric::temperature, metrics, MetricHistories());
}

MetricPresentation networkPresentation(const SystemMetrics& metrics) {
    return presentation(MenuBarMetric::download, metrics, MetricHistories());
}

} // namespace lumetra

#pragma once

#include "dashboard/CardExtras.h"
#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

#include <vector>

namespace lumetra {

// A card headed "Metrics" with one CompactMetricRow per metric, 8 apart, each followed by
// its extras.
class CompactMetricsCard final : public PaintedView {
public:
    CompactMetricsCard(std::vector<MetricPresentation> metrics, const DashboardTheme& theme);

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    // Where metric `index`'s row stands in a card painted at `rect`.
    QRectF rowRect(std::size_t index, const QRectF& rect, const DashboardTheme& theme) const;

    static constexpr double kRowSpacing = 8;

private:
    std::vector<MetricPresentation> metrics_;
    std::vector<CardExtras> extras_; // under each metric's row
};

} // namespace lumetra

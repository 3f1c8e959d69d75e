#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

#include <vector>

namespace lumetra {

// A card headed "Metrics" with one CompactMetricRow per metric, 8 apart.
class CompactMetricsCard final : public PaintedView {
public:
    explicit CompactMetricsCard(std::vector<MetricPresentation> metrics)
        : metrics_(std::move(metrics)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    // Where metric `index`'s row stands in a card painted at `rect`.
    QRectF rowRect(std::size_t index, const QRectF& rect, const DashboardTheme& theme) const;

    static constexpr double kRowSpacing = 8;

private:
    std::vector<MetricPresentation> metrics_;
};

} // namespace lumetra

#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

namespace lumetra {

// The value (20 semibold), the detail (10, secondary) and, from two history values on, the
// history as an area 34 high in the level colour.
class SparklineAreaMetricCard final : public PaintedView {
public:
    SparklineAreaMetricCard(MetricPresentation metric, double lower, double upper)
        : metric_(std::move(metric)), lower_(lower), upper_(upper) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kValueSize = 20;
    static constexpr double kDetailSize = 10;
    static constexpr double kSparklineHeight = 34;
    static constexpr double kSpacing = 6;

private:
    MetricPresentation metric_;
    double lower_;
    double upper_;
};

} // namespace lumetra

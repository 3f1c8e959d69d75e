#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

namespace lumetra {

// The value large (22 semibold), the detail below it (10.5, secondary) and a level bar (5
// high) when the metric has a level.
class ClassicMetricCard final : public PaintedView {
public:
    explicit ClassicMetricCard(MetricPresentation metric) : metric_(std::move(metric)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kValueSize = 22;
    static constexpr double kDetailSize = 10.5;
    static constexpr double kBarHeight = 5;
    static constexpr double kSpacing = 6;

private:
    MetricPresentation metric_;
};

} // namespace lumetra

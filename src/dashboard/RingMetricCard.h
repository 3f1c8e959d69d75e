#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

namespace lumetra {

// A ring filled clockwise from the top to the level, the value in its centre, the title with
// its symbol and the detail below, all centred.
class RingMetricCard final : public PaintedView {
public:
    // `titleSize` lets rings side by side share one title size when a long title shrinks.
    RingMetricCard(MetricPresentation metric, double lineWidth, double diameter,
                   double titleSize = kTitleSize)
        : metric_(std::move(metric)), lineWidth_(lineWidth), diameter_(diameter),
          titleSize_(titleSize) {}

    // The largest title size, down to kMinimumTitleScale, that fits a column of `width`.
    double fittingTitleSize(double width, const DashboardTheme& theme) const;

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kValueSize = 14;
    static constexpr double kTitleSize = 11;
    static constexpr double kDetailSize = 9.5;
    static constexpr double kSpacing = 6;
    static constexpr double kValuePadding = 4;
    // Three rings share 256 pixels: "Temperature" under one must shrink to fit its column.
    static constexpr double kMinimumTitleScale = 0.6;

private:
    MetricPresentation metric_;
    double lineWidth_;
    double diameter_;
    double titleSize_;
};

} // namespace lumetra

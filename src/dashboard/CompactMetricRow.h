#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

namespace lumetra {

// One line: symbol, title, a level bar taking the rest of the width, the value trailing.
class CompactMetricRow final : public PaintedView {
public:
    explicit CompactMetricRow(MetricPresentation metric) : metric_(std::move(metric)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kIconFrame = 13;
    static constexpr double kTitleFrame = 56;
    static constexpr double kValueMinimumWidth = 34;
    static constexpr double kBarHeight = 6;
    static constexpr double kFontSize = 11;
    static constexpr double kSpacing = 6;

private:
    MetricPresentation metric_;
};

} // namespace lumetra

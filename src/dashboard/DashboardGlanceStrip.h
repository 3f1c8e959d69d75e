#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

namespace lumetra {

// CPU and memory at a glance, in one row: seven rising bars and the CPU figure, a capsule and
// the memory figure, each meter in its metric's level colour.
class DashboardGlanceStrip final : public PaintedView {
public:
    DashboardGlanceStrip(MetricPresentation cpu, MetricPresentation memory)
        : cpu_(std::move(cpu)), memory_(std::move(memory)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr int kSegments = 7;
    static constexpr double kCapsuleWidth = 44;
    static constexpr double kCapsuleHeight = 8;
    static constexpr double kFontSize = 12;
    static constexpr double kSpacing = 6;

    // The accessibility name of the strip.
    static constexpr const char* kIdentifier = "DashboardGlanceStrip";

private:
    MetricPresentation cpu_;
    MetricPresentation memory_;
};

} // namespace lumetra

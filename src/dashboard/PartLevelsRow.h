#pragma once

#include "dashboard/PaintedView.h"

#include <vector>

namespace lumetra {

// The levels of a figure's parts (the CPU's cores) as a compact row of thin upright bars, each
// filled to its level in its level colour over a faint track. Many parts share the width:
// bars get thinner (down to a pixel) and the gaps go first.
class PartLevelsRow final : public PaintedView {
public:
    explicit PartLevelsRow(std::vector<double> levels) : levels_(std::move(levels)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kHeight = 14;
    static constexpr double kGap = 2;
    static constexpr double kMaximumBarWidth = 8;

private:
    std::vector<double> levels_;
};

} // namespace lumetra

#pragma once

#include "dashboard/PaintedView.h"

#include <vector>

namespace lumetra {

// The frame around a card's content: the pieces stacked 6 apart, padded 10, on a rounded
// rectangle (radius 10) in the card fill. Holds its pieces by pointer; they must outlive it.
class DashboardCard final : public PaintedView {
public:
    explicit DashboardCard(std::vector<const PaintedView*> content, double spacing = kSpacing)
        : content_(std::move(content)), spacing_(spacing) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    // Where the content goes inside a frame of `rect`.
    static QRectF contentRect(const QRectF& rect);

    static constexpr double kPadding = 10;
    static constexpr double kSpacing = 6;
    static constexpr double kCornerRadius = 10;

private:
    std::vector<const PaintedView*> content_;
    double spacing_;
};

} // namespace lumetra

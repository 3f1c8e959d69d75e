#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

namespace lumetra {

// A metric's value (semibold, primary) over its detail (secondary) and, under them, a graphic
// of the metric that the subclass draws: the body of the classic and sparkline cards.
class ValueDetailCard : public PaintedView {
public:
    double heightFor(double width, const DashboardTheme& theme) const final;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const final;

    static constexpr double kSpacing = 6;

protected:
    ValueDetailCard(MetricPresentation metric, double valueSize, double detailSize)
        : metric_(std::move(metric)), valueSize_(valueSize), detailSize_(detailSize) {}

    // The graphic's height; 0 when there is none to draw.
    virtual double graphicHeight() const = 0;
    virtual void paintGraphic(QPainter& painter, const QRectF& rect,
                              const DashboardTheme& theme) const = 0;

    MetricPresentation metric_;

private:
    double valueSize_;
    double detailSize_;
};

} // namespace lumetra

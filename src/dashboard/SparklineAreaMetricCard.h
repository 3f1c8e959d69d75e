#pragma once

#include "dashboard/ValueDetailCard.h"

namespace lumetra {

// The value (20 semibold), the detail (10, secondary) and, from two history values on, the
// history as an area 34 high in the level colour.
class SparklineAreaMetricCard final : public ValueDetailCard {
public:
    SparklineAreaMetricCard(MetricPresentation metric, double lower, double upper)
        : ValueDetailCard(std::move(metric), kValueSize, kDetailSize), lower_(lower),
          upper_(upper) {}

    static constexpr double kValueSize = 20;
    static constexpr double kDetailSize = 10;
    static constexpr double kSparklineHeight = 34;

protected:
    double graphicHeight() const override;
    void paintGraphic(QPainter& painter, const QRectF& rect,
                      const DashboardTheme& theme) const override;

private:
    double lower_;
    double upper_;
};

} // namespace lumetra

#pragma once

#include "dashboard/ValueDetailCard.h"

namespace lumetra {

// The value large (22 semibold), the detail below it (10.5, secondary) and a level bar (5
// high) when the metric has a level.
class ClassicMetricCard final : public ValueDetailCard {
public:
    explicit ClassicMetricCard(MetricPresentation metric)
        : ValueDetailCard(std::move(metric), kValueSize, kDetailSize) {}

    static constexpr double kValueSize = 22;
    static constexpr double kDetailSize = 10.5;
    static constexpr double kBarHeight = 5;

protected:
    double graphicHeight() const override;
    void paintGraphic(QPainter& painter, const QRectF& rect,
                      const DashboardTheme& theme) const override;
};

} // namespace lumetra

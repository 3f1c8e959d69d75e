#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/MetricRow.h"
#include "dashboard/PartLevelsRow.h"

#include <vector>

namespace lumetra {

// What a card shows besides its level, in every card style: the row of its parts' levels
// and the lines of the metrics placed inside it (swap in the memory card), stacked.
class CardExtras final : public PaintedView {
public:
    explicit CardExtras(const MetricPresentation& metric, const DashboardTheme& theme);

    bool isEmpty() const { return parts_.empty() && lines_.empty(); }
    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

private:
    std::vector<PartLevelsRow> parts_;
    std::vector<MetricRow> lines_;
};

} // namespace lumetra

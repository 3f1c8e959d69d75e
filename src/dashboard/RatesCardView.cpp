#include "dashboard/RatesCardView.h"

#include "dashboard/DashboardCard.h"

namespace lumetra {

std::vector<const PaintedView*> RatesCardView::pieces() const {
    std::vector<const PaintedView*> all{&header_};
    for (const MetricRow& row : rows_)
        all.push_back(&row);
    return all;
}

double RatesCardView::heightFor(double width, const DashboardTheme& theme) const {
    return DashboardCard(pieces()).heightFor(width, theme);
}

void RatesCardView::paint(QPainter& painter, const QRectF& rect,
                          const DashboardTheme& theme) const {
    DashboardCard(pieces()).paint(painter, rect, theme);
}

} // namespace lumetra

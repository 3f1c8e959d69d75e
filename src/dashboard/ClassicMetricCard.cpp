#include "dashboard/ClassicMetricCard.h"

#include "dashboard/PaintHelpers.h"

namespace lumetra {

double ClassicMetricCard::graphicHeight() const {
    return metric_.percentage ? kBarHeight : 0;
}

void ClassicMetricCard::paintGraphic(QPainter& painter, const QRectF& rect,
                                     const DashboardTheme& theme) const {
    paint::levelBar(painter, rect, *metric_.percentage / 100,
                    theme.level(levelColor(metric_.percentage)), theme);
}

} // namespace lumetra

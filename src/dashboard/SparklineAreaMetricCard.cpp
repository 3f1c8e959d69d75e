#include "dashboard/SparklineAreaMetricCard.h"

#include "dashboard/AreaSparkline.h"

namespace lumetra {

double SparklineAreaMetricCard::graphicHeight() const {
    return metric_.history.size() >= 2 ? kSparklineHeight : 0;
}

void SparklineAreaMetricCard::paintGraphic(QPainter& painter, const QRectF& rect,
                                           const DashboardTheme& theme) const {
    AreaSparkline(metric_.history, lower_, upper_, theme.level(levelColor(metric_.percentage)))
        .paint(painter, rect);
}

} // namespace lumetra

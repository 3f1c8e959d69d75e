#include "dashboard/MetricRow.h"

#include "dashboard/PaintHelpers.h"

namespace lumetra {

double MetricRow::heightFor(double, const DashboardTheme& theme) const {
    return paint::lineHeight(theme, kFontSize);
}

void MetricRow::paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const {
    const double valueWidth = std::min(rect.width(), paint::textWidth(theme, value_, kFontSize));
    paint::text(painter, theme, rect, value_, kFontSize, QFont::Normal, valueColor_,
                Qt::AlignRight);
    paint::text(painter, theme, rect.adjusted(0, 0, -valueWidth - 8, 0), title_, kFontSize,
                QFont::Normal, theme.primary());
}

} // namespace lumetra

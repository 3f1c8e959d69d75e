#include "dashboard/ClassicMetricCard.h"

#include "dashboard/PaintHelpers.h"

namespace lumetra {

double ClassicMetricCard::heightFor(double, const DashboardTheme& theme) const {
    double height = paint::lineHeight(theme, kValueSize, QFont::DemiBold);
    if (metric_.detailText)
        height += kSpacing + paint::lineHeight(theme, kDetailSize);
    if (metric_.percentage)
        height += kSpacing + kBarHeight;
    return height;
}

void ClassicMetricCard::paint(QPainter& painter, const QRectF& rect,
                              const DashboardTheme& theme) const {
    double y = rect.top();
    const double valueHeight = paint::lineHeight(theme, kValueSize, QFont::DemiBold);
    paint::text(painter, theme, QRectF(rect.left(), y, rect.width(), valueHeight),
                metric_.valueText, kValueSize, QFont::DemiBold, theme.primary());
    y += valueHeight;
    if (metric_.detailText) {
        const double detailHeight = paint::lineHeight(theme, kDetailSize);
        y += kSpacing;
        paint::text(painter, theme, QRectF(rect.left(), y, rect.width(), detailHeight),
                    *metric_.detailText, kDetailSize, QFont::Normal, theme.secondary());
        y += detailHeight;
    }
    if (metric_.percentage) {
        y += kSpacing;
        paint::levelBar(painter, QRectF(rect.left(), y, rect.width(), kBarHeight),
                        *metric_.percentage / 100, theme.level(levelColor(metric_.percentage)),
                        theme);
    }
}

} // namespace lumetra

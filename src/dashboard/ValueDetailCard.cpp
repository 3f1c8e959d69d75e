#include "dashboard/ValueDetailCard.h"

#include "dashboard/PaintHelpers.h"

namespace lumetra {

double ValueDetailCard::heightFor(double, const DashboardTheme& theme) const {
    double height = paint::lineHeight(theme, valueSize_, QFont::DemiBold);
    if (metric_.detailText)
        height += kSpacing + paint::lineHeight(theme, detailSize_);
    if (const double graphic = graphicHeight(); graphic > 0)
        height += kSpacing + graphic;
    return height;
}

void ValueDetailCard::paint(QPainter& painter, const QRectF& rect,
                            const DashboardTheme& theme) const {
    double y = rect.top();
    const double valueHeight = paint::lineHeight(theme, valueSize_, QFont::DemiBold);
    paint::text(painter, theme, QRectF(rect.left(), y, rect.width(), valueHeight),
                metric_.valueText, valueSize_, QFont::DemiBold, theme.primary());
    y += valueHeight;
    if (metric_.detailText) {
        const double detailHeight = paint::lineHeight(theme, detailSize_);
        y += kSpacing;
        paint::text(painter, theme, QRectF(rect.left(), y, rect.width(), detailHeight),
                    *metric_.detailText, detailSize_, QFont::Normal, theme.secondary());
        y += detailHeight;
    }
    if (const double graphic = graphicHeight(); graphic > 0)
        paintGraphic(painter, QRectF(rect.left(), y + kSpacing, rect.width(), graphic), theme);
}

} // namespace lumetra

#include "dashboard/CompactMetricRow.h"

#include "dashboard/PaintHelpers.h"

#include <algorithm>

namespace lumetra {

double CompactMetricRow::heightFor(double, const DashboardTheme& theme) const {
    return std::max(kIconFrame, paint::lineHeight(theme, kFontSize, QFont::DemiBold));
}

void CompactMetricRow::paint(QPainter& painter, const QRectF& rect,
                             const DashboardTheme& theme) const {
    double x = rect.left();
    paint::icon(painter, QRectF(x, rect.top(), kIconFrame, rect.height()), metric_.systemImage,
                kFontSize + 1, theme.secondary());
    x += kIconFrame + kSpacing;
    paint::shrinkingText(painter, theme, QRectF(x, rect.top(), kTitleFrame, rect.height()),
                         metric_.title, kFontSize, QFont::DemiBold, theme.secondary(), 0.8);
    x += kTitleFrame + kSpacing;
    const double valueWidth = std::max(
        kValueMinimumWidth, paint::textWidth(theme, metric_.valueText, kFontSize, QFont::DemiBold));
    const QRectF valueRect(rect.right() - valueWidth, rect.top(), valueWidth, rect.height());
    paint::text(painter, theme, valueRect, metric_.valueText, kFontSize, QFont::DemiBold,
                theme.primary(), Qt::AlignRight);
    const double barRight = valueRect.left() - kSpacing;
    if (metric_.percentage && barRight > x) {
        const QRectF bar(x, rect.center().y() - kBarHeight / 2, barRight - x, kBarHeight);
        paint::levelBar(painter, bar, *metric_.percentage / 100,
                        theme.level(levelColor(metric_.percentage)), theme);
    }
}

} // namespace lumetra

#include "dashboard/SectionHeader.h"

#include "dashboard/PaintHelpers.h"

#include <algorithm>

namespace lumetra {

double SectionHeader::heightFor(double, const DashboardTheme& theme) const {
    return std::max(kIconSize, paint::lineHeight(theme, kFontSize, QFont::DemiBold));
}

void SectionHeader::paint(QPainter& painter, const QRectF& rect,
                          const DashboardTheme& theme) const {
    const QColor color = theme.secondary();
    paint::icon(painter, QRectF(rect.left(), rect.top(), kIconSize, rect.height()), systemImage_,
                kIconSize, color);
    const double x = rect.left() + kIconSize + kIconSpacing;
    paint::text(painter, theme, QRectF(x, rect.top(), rect.right() - x, rect.height()), title_,
                kFontSize, QFont::DemiBold, color);
}

} // namespace lumetra

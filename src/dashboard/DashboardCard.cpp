#include "dashboard/DashboardCard.h"

#include "dashboard/PaintHelpers.h"

namespace lumetra {

QRectF DashboardCard::contentRect(const QRectF& rect) {
    return rect.adjusted(kPadding, kPadding, -kPadding, -kPadding);
}

double DashboardCard::heightFor(double width, const DashboardTheme& theme) const {
    const double inner = width - 2 * kPadding;
    double height = 2 * kPadding;
    for (std::size_t i = 0; i < content_.size(); ++i)
        height += content_[i]->heightFor(inner, theme) + (i > 0 ? spacing_ : 0);
    return height;
}

void DashboardCard::paint(QPainter& painter, const QRectF& rect,
                          const DashboardTheme& theme) const {
    paint::cardBackground(painter, rect, kCornerRadius, theme);
    const QRectF inner = contentRect(rect);
    double y = inner.top();
    for (const PaintedView* piece : content_) {
        const double height = piece->heightFor(inner.width(), theme);
        piece->paint(painter, QRectF(inner.left(), y, inner.width(), height), theme);
        y += height + spacing_;
    }
}

} // namespace lumetra

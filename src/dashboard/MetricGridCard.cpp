#include "dashboard/MetricGridCard.h"

#include "dashboard/DashboardCard.h"
#include "dashboard/MeterGeometry.h"
#include "dashboard/PaintHelpers.h"

namespace lumetra {

double MetricGridCard::valueFontSize(const QString& valueText) {
    return valueText.size() < 6 ? 18 : 14;
}

double MetricGridCard::cellHeight(const DashboardTheme& theme) const {
    // Every cell is as high as one with the large value, so the rows line up.
    return 2 * kPadding + kTileSize + kCellSpacing + paint::lineHeight(theme, 18, QFont::DemiBold) +
           kCellSpacing + paint::lineHeight(theme, kTitleSize, QFont::DemiBold);
}

double MetricGridCard::heightFor(double, const DashboardTheme& theme) const {
    const auto rows = static_cast<double>((metrics_.size() + columns_ - 1) / columns_);
    return rows <= 0 ? 0 : rows * cellHeight(theme) + (rows - 1) * spacing_;
}

QRectF MetricGridCard::cellRect(std::size_t index, const QRectF& rect,
                                const DashboardTheme& theme) const {
    const double width = (rect.width() - (columns_ - 1) * spacing_) / columns_;
    const double height = cellHeight(theme);
    const auto column = static_cast<double>(index % columns_);
    const auto row = static_cast<double>(index / columns_);
    return {rect.left() + column * (width + spacing_), rect.top() + row * (height + spacing_),
            width, height};
}

void MetricGridCard::paint(QPainter& painter, const QRectF& rect,
                           const DashboardTheme& theme) const {
    const double valueLine = paint::lineHeight(theme, 18, QFont::DemiBold);
    const double titleLine = paint::lineHeight(theme, kTitleSize, QFont::DemiBold);
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        const MetricPresentation& metric = metrics_[i];
        const QRectF cell = cellRect(i, rect, theme);
        paint::cardBackground(painter, cell, DashboardCard::kCornerRadius, theme);
        const QRectF inner = cell.adjusted(kPadding, kPadding, -kPadding, -kPadding);
        const QRectF tile(inner.left(), inner.top(), kTileSize, kTileSize);
        painter.setPen(Qt::NoPen);
        painter.setBrush(meter::gridTileColor(static_cast<int>(i)));
        painter.drawRoundedRect(tile, kTileCorner, kTileCorner);
        paint::icon(painter, tile, metric.systemImage, kTileSymbolSize + 1, Qt::white);
        double y = tile.bottom() + kCellSpacing;
        paint::shrinkingText(painter, theme, QRectF(inner.left(), y, inner.width(), valueLine),
                             metric.valueText, valueFontSize(metric.valueText), QFont::DemiBold,
                             theme.primary(), 0.7);
        y += valueLine + kCellSpacing;
        paint::text(painter, theme, QRectF(inner.left(), y, inner.width(), titleLine), metric.title,
                    kTitleSize, QFont::DemiBold, theme.secondary());
    }
}

} // namespace lumetra

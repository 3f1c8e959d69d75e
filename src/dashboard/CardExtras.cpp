#include "dashboard/CardExtras.h"

#include "dashboard/DashboardCard.h"

namespace lumetra {

CardExtras::CardExtras(const MetricPresentation& metric, const DashboardTheme& theme) {
    if (!metric.parts.empty())
        parts_.emplace_back(metric.parts);
    for (const auto& [title, value] : metric.lines)
        lines_.emplace_back(title, value, theme.primary());
}

double CardExtras::heightFor(double width, const DashboardTheme& theme) const {
    double height = 0;
    int pieces = 0;
    for (const PartLevelsRow& row : parts_) {
        height += row.heightFor(width, theme);
        ++pieces;
    }
    for (const MetricRow& line : lines_) {
        height += line.heightFor(width, theme);
        ++pieces;
    }
    return pieces == 0 ? 0 : height + (pieces - 1) * DashboardCard::kSpacing;
}

void CardExtras::paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const {
    double y = rect.top();
    auto place = [&](const PaintedView& view) {
        const double height = view.heightFor(rect.width(), theme);
        view.paint(painter, QRectF(rect.left(), y, rect.width(), height), theme);
        y += height + DashboardCard::kSpacing;
    };
    for (const PartLevelsRow& row : parts_)
        place(row);
    for (const MetricRow& line : lines_)
        place(line);
}

} // namespace lumetra

#include "dashboard/PartLevelsRow.h"

#include "format/LevelColor.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lumetra {

double PartLevelsRow::heightFor(double, const DashboardTheme&) const {
    return levels_.empty() ? 0 : kHeight;
}

void PartLevelsRow::paint(QPainter& painter, const QRectF& rect,
                          const DashboardTheme& theme) const {
    if (levels_.empty())
        return;
    const auto count = static_cast<double>(levels_.size());
    // The gaps go first when the bars would get thinner than two pixels.
    double gap = kGap;
    double width = (rect.width() - (count - 1) * gap) / count;
    if (width < 2) {
        gap = 0;
        width = rect.width() / count;
    }
    width = std::min(width, kMaximumBarWidth);
    painter.save();
    painter.setPen(Qt::NoPen);
    double x = rect.left();
    for (const double level : levels_) {
        const QRectF bar(x, rect.top(), width, rect.height());
        painter.setBrush(theme.quaternary());
        painter.drawRect(bar);
        const double fraction = std::isnan(level) ? 0 : std::clamp(level, 0.0, 100.0) / 100;
        if (fraction > 0) {
            const double filled = std::max(1.0, fraction * bar.height());
            painter.setBrush(theme.level(levelColor(level)));
            painter.drawRect(QRectF(bar.left(), bar.bottom() - filled, bar.width(), filled));
        }
        x += width + gap;
    }
    painter.restore();
}

} // namespace lumetra

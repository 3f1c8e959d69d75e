#include "dashboard/AreaSparkline.h"

#include <QLinearGradient>

#include <algorithm>

namespace lumetra {

QPainterPath AreaSparkline::path(const QRectF& rect) const {
    QPainterPath outline;
    const std::size_t count = values_.size();
    if (count < 2)
        return outline;
    const double span = std::max(upper_ - lower_, 0.0001);
    const double step = rect.width() / static_cast<double>(count - 1);
    const double height = rect.height();
    for (std::size_t i = 0; i < count; ++i) {
        const QPointF point(rect.left() + step * static_cast<double>(i),
                            rect.top() + height - height * (values_[i] - lower_) / span);
        if (i == 0)
            outline.moveTo(point);
        else
            outline.lineTo(point);
    }
    outline.lineTo(rect.right(), rect.bottom());
    outline.lineTo(rect.left(), rect.bottom());
    outline.closeSubpath();
    return outline;
}

void AreaSparkline::paint(QPainter& painter, const QRectF& rect) const {
    const QPainterPath outline = path(rect);
    if (outline.isEmpty())
        return;
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    QColor top = color_;
    top.setAlphaF(0.28f);
    QColor bottom = color_;
    bottom.setAlphaF(0.02f);
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.save();
    painter.setClipRect(rect);
    painter.fillPath(outline, gradient);
    painter.restore();
}

} // namespace lumetra

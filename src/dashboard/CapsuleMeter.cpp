#include "dashboard/CapsuleMeter.h"

#include "dashboard/MeterGeometry.h"

#include <algorithm>

namespace lumetra {

double CapsuleMeter::fillWidth(double width) const {
    return meter::capsuleFillWidth(percentage_, width);
}

void CapsuleMeter::paint(QPainter& painter, const QRectF& rect, const QColor& track) const {
    const double radius = rect.height() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(track);
    painter.drawRoundedRect(rect, radius, radius);
    const double width = fillWidth(rect.width());
    if (width <= 0)
        return;
    painter.setBrush(color_);
    painter.drawRoundedRect(QRectF(rect.left(), rect.top(), width, rect.height()),
                            std::min(radius, width / 2), radius);
}

} // namespace lumetra

#include "dashboard/CapsuleMeter.h"

#include "dashboard/MeterGeometry.h"
#include "dashboard/PaintHelpers.h"

namespace lumetra {

double CapsuleMeter::fillWidth(double width) const {
    return meter::capsuleFillWidth(percentage_, width);
}

void CapsuleMeter::paint(QPainter& painter, const QRectF& rect, const QColor& track) const {
    paint::capsule(painter, rect, fillWidth(rect.width()), color_, track);
}

} // namespace lumetra

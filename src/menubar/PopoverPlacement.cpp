#include "menubar/PopoverPlacement.h"

#include <algorithm>
#include <cmath>

namespace lumetra {

QRectF popoverFrame(const QRectF& anchor, const QSizeF& size) {
    const double x = anchor.center().x() - size.width() * 0.5;
    const double y = anchor.bottom();
    return {x, y, size.width(), size.height()};
}

QRect fitPopoverToScreen(const QRectF& frame, const QRectF& anchor, const QRect& available) {
    QRectF placed = frame;
    const QRectF area(available);
    if (placed.bottom() > area.bottom() && anchor.top() - placed.height() >= area.top())
        placed.moveBottom(anchor.top());
    placed.moveLeft(std::max(area.left(), std::min(placed.left(), area.right() - placed.width())));
    placed.moveTop(std::max(area.top(), std::min(placed.top(), area.bottom() - placed.height())));
    return QRect(static_cast<int>(std::lround(placed.x())),
                 static_cast<int>(std::lround(placed.y())),
                 static_cast<int>(std::lround(placed.width())),
                 static_cast<int>(std::lround(placed.height())));
}

} // namespace lumetra

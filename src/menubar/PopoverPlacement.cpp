#include "menubar/PopoverPlacement.h"

#include <algorithm>
#include <cmath>

namespace lumetra {

namespace {

// Edges rounded one by one, so a frame that ends at a screen's edge does not round past it.
QRect rounded(const QRectF& rect) {
    const auto left = static_cast<int>(std::lround(rect.left()));
    const auto top = static_cast<int>(std::lround(rect.top()));
    const auto right = static_cast<int>(std::lround(rect.right()));
    const auto bottom = static_cast<int>(std::lround(rect.bottom()));
    return QRect(left, top, right - left, bottom - top);
}

double clampTo(double value, double low, double high) {
    return std::max(low, std::min(value, high));
}

QRectF deviceGeometry(const ScreenSpace& screen) {
    const QRectF logical(screen.geometry);
    return {logical.topLeft(), logical.size() * screen.devicePixelRatio};
}

} // namespace

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
    return rounded(placed);
}

QPointF deviceToLogical(const QPoint& device, const QList<ScreenSpace>& screens) {
    for (const ScreenSpace& screen : screens) {
        if (!deviceGeometry(screen).contains(QPointF(device)))
            continue;
        const QPointF origin = QRectF(screen.geometry).topLeft();
        const double ratio = screen.devicePixelRatio > 0 ? screen.devicePixelRatio : 1.0;
        return origin + (QPointF(device) - origin) / ratio;
    }
    return QPointF(device);
}

QPoint logicalToDevice(const QPointF& logical, const QList<ScreenSpace>& screens) {
    for (const ScreenSpace& screen : screens) {
        if (!QRectF(screen.geometry).contains(logical))
            continue;
        const QPointF origin = QRectF(screen.geometry).topLeft();
        return ((logical - origin) * screen.devicePixelRatio + origin).toPoint();
    }
    return logical.toPoint();
}

QRectF panelAt(const QPointF& click, const QRectF& screen, const QRectF& available,
               const QRectF& windowUnderClick) {
    if (click.y() < available.top())
        return {screen.left(), screen.top(), screen.width(), available.top() - screen.top()};
    if (click.y() >= available.bottom())
        return {screen.left(), available.bottom(), screen.width(),
                screen.bottom() - available.bottom()};
    if (click.x() < available.left())
        return {screen.left(), screen.top(), available.left() - screen.left(), screen.height()};
    if (click.x() >= available.right())
        return {available.right(), screen.top(), screen.right() - available.right(),
                screen.height()};
    // A window as wide and as high as the screen is a desktop or a maximised window, not a
    // panel.
    const QRectF window = windowUnderClick.intersected(screen);
    if (window.contains(click) &&
        (window.width() < screen.width() || window.height() < screen.height()))
        return window;
    // Nothing says where the panel is (no work area, and the panel is no X11 window we can
    // see, or is stacked under the desktop). An item sits in the middle of its panel's
    // thickness, so a click this close to an edge is on a panel twice as thick as the click's
    // distance from that edge; top and bottom first, where most desktops keep their panels.
    // Distances run to the far side of the clicked pixel, so the band errs thicker rather
    // than leave the popover over the panel's edge.
    const double column = std::floor(click.x());
    const double row = std::floor(click.y());
    const double toTop = row + 1 - screen.top();
    const double toBottom = screen.bottom() - row;
    const double toLeft = column + 1 - screen.left();
    const double toRight = screen.right() - column;
    if (std::min(toTop, toBottom) <= kPanelItemMaxInset)
        return toBottom < toTop ? QRectF(screen.left(), screen.bottom() - 2 * toBottom,
                                         screen.width(), 2 * toBottom)
                                : QRectF(screen.left(), screen.top(), screen.width(), 2 * toTop);
    if (std::min(toLeft, toRight) <= kPanelItemMaxInset)
        return toRight < toLeft ? QRectF(screen.right() - 2 * toRight, screen.top(), 2 * toRight,
                                         screen.height())
                                : QRectF(screen.left(), screen.top(), 2 * toLeft, screen.height());
    return {};
}

QRect placeBesidePanel(const QPointF& click, const QSizeF& size, const QRectF& panel,
                       const QRectF& screen, const QRectF& available) {
    QRectF area = available.intersected(screen);
    QRectF placed(QPointF(), size);
    if (panel.width() >= panel.height()) {
        const bool top = panel.center().y() < screen.center().y();
        if (top)
            area.setTop(std::max(area.top(), panel.bottom()));
        else
            area.setBottom(std::min(area.bottom(), panel.top()));
        placed.setHeight(std::min(size.height(), area.height()));
        placed.moveLeft(
            clampTo(click.x() - size.width() * 0.5, area.left(), area.right() - size.width()));
        placed.moveTop(top ? area.top() : area.bottom() - placed.height());
    } else {
        const bool left = panel.center().x() < screen.center().x();
        if (left)
            area.setLeft(std::max(area.left(), panel.right()));
        else
            area.setRight(std::min(area.right(), panel.left()));
        placed.setHeight(std::min(size.height(), area.height()));
        placed.moveLeft(left ? area.left() : area.right() - size.width());
        placed.moveTop(clampTo(click.y() - placed.height() * 0.5, area.top(),
                               area.bottom() - placed.height()));
    }
    return rounded(placed);
}

} // namespace lumetra

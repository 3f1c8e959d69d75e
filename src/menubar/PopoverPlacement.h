#pragma once

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSizeF>

namespace lumetra {

// Where the popover goes, in screen coordinates (origin top-left, y down): centred under the
// anchor with its top edge on the anchor's bottom edge. No clamping here: the arithmetic
// alone, so it can be checked against worked examples.
QRectF popoverFrame(const QRectF& anchor, const QSizeF& size);

// The frame moved inside the screen's available area. When it would run past the bottom
// (a panel at the bottom edge), it opens above the anchor instead; then it is shifted
// sideways and vertically until it fits, the top-left corner winning when it cannot.
QRect fitPopoverToScreen(const QRectF& frame, const QRectF& anchor, const QRect& available);

// One screen as Qt lays it out: its geometry in device-independent pixels and its scale.
struct ScreenSpace {
    QRect geometry;
    double devicePixelRatio = 1.0;
};

// A point in device pixels, as a panel's Activate(x, y) gives it, in device-independent
// pixels. Each screen keeps its origin and scales from it, as Qt maps screens.
QPointF deviceToLogical(const QPoint& device, const QList<ScreenSpace>& screens);
QPoint logicalToDevice(const QPointF& logical, const QList<ScreenSpace>& screens);

// How far from the screen's edge the centre of a panel's item may be (half a thick panel).
inline constexpr double kPanelItemMaxInset = 48;

// The panel that holds an item clicked at `click`: the band between the screen's edge and
// its available area on the side of the click; failing that (no window manager publishes
// a work area), `windowUnderClick` when it is a window narrower than the screen in one
// direction; failing that, when the click is within kPanelItemMaxInset of an edge (the top
// or bottom before the sides), a band along that edge twice as thick as the click's
// distance from it (the item at the middle of its panel); else an empty rectangle (unknown).
QRectF panelAt(const QPointF& click, const QRectF& screen, const QRectF& available,
               const QRectF& windowUnderClick);

// The popover of `size` beside `panel` at `click`: below a panel in the screen's upper half,
// above one in its lower half, right of a left panel, left of a right one; centred on the
// click along the panel and kept within the available area off the panel, its height
// capped to the room there (the content then scrolls).
QRect placeBesidePanel(const QPointF& click, const QSizeF& size, const QRectF& panel,
                       const QRectF& screen, const QRectF& available);

} // namespace lumetra

#pragma once

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

} // namespace lumetra

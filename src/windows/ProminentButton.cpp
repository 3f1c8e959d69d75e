#include "windows/ProminentButton.h"

#include "windows/SymbolIcon.h"

#include <QPainter>

namespace lumetra {

ProminentButton::ProminentButton(const QString& text, const QString& symbol, QWidget* parent)
    : QPushButton(text, parent), symbol_(symbol) {
    setCursor(Qt::PointingHandCursor);
    setMinimumHeight(32);
}

QSize ProminentButton::sizeHint() const {
    const QFontMetrics metrics(font());
    const int icon = symbol_.isEmpty() ? 0 : 22;
    return {metrics.horizontalAdvance(text()) + icon + 36, std::max(32, metrics.height() + 14)};
}

void ProminentButton::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QColor fill = palette().color(QPalette::Highlight);
    if (isDown())
        fill = fill.darker(118);
    else if (underMouse())
        fill = fill.lighter(108);
    if (!isEnabled())
        fill.setAlphaF(0.45F);
    const QRectF box = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (hasFocus()) {
        QColor ring = palette().color(QPalette::Highlight);
        ring.setAlphaF(0.45F);
        p.setPen(QPen(ring, 3));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(box.adjusted(-0.5, -0.5, 0.5, 0.5), 7, 7);
    }
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(box, 6, 6);

    const QFontMetrics metrics(font());
    const int iconSize = symbol_.isEmpty() ? 0 : 16;
    const int gap = symbol_.isEmpty() ? 0 : 6;
    const int contentWidth = iconSize + gap + metrics.horizontalAdvance(text());
    const int x = (width() - contentWidth) / 2;
    if (iconSize > 0)
        p.drawPixmap(QPoint(x, (height() - iconSize) / 2),
                     SymbolIcon::pixmap(symbol_, Qt::white, iconSize, devicePixelRatioF()));
    p.setPen(Qt::white);
    p.drawText(QRect(x + iconSize + gap, 0, contentWidth, height()),
               Qt::AlignLeft | Qt::AlignVCenter, text());
}

} // namespace lumetra

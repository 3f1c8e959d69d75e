#include "windows/ToggleSwitch.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

namespace lumetra {

ToggleSwitch::ToggleSwitch(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const {
    return {34, 20};
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    const qreal radius = track.height() / 2;
    const bool dark = palette().color(QPalette::Window).lightnessF() < 0.5;
    QColor fill = isChecked() ? palette().color(QPalette::Highlight)
                              : (dark ? QColor(255, 255, 255, 50) : QColor(0, 0, 0, 38));
    if (!isEnabled())
        fill.setAlphaF(fill.alphaF() * 0.45F);
    if (hasFocus()) {
        QColor ring = palette().color(QPalette::Highlight);
        ring.setAlphaF(0.5F);
        p.setPen(QPen(ring, 3));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(track, radius, radius);
    }
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(track, radius, radius);
    const qreal knob = track.height() - 4;
    const qreal x = isChecked() ? track.right() - 2 - knob : track.left() + 2;
    p.setBrush(QColor(0, 0, 0, 40));
    p.drawEllipse(QRectF(x, track.top() + 2.5, knob, knob));
    p.setBrush(Qt::white);
    p.drawEllipse(QRectF(x, track.top() + 2, knob, knob));
}

} // namespace lumetra

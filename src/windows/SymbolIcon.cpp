#include "windows/SymbolIcon.h"

#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <functional>
#include <numbers>

namespace lumetra {

namespace {

using Draw = std::function<void(QPainter&, const QColor&)>;

// Each symbol is drawn in a 24 × 24 box.
void strokeStyle(QPainter& p, const QColor& color, qreal width = 2.0) {
    QPen pen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
}

void gear(QPainter& p, const QColor& c) {
    QPainterPath path;
    const QPointF centre(12, 12);
    constexpr int teeth = 8;
    for (int i = 0; i < teeth * 2; ++i) {
        const double angle = i * std::numbers::pi / teeth;
        const double r = (i % 2 == 0) ? 10.5 : 8.0;
        const double a0 = angle - std::numbers::pi / teeth / 2;
        const double a1 = angle + std::numbers::pi / teeth / 2;
        const QPointF p0 = centre + QPointF(std::cos(a0) * r, std::sin(a0) * r);
        const QPointF p1 = centre + QPointF(std::cos(a1) * r, std::sin(a1) * r);
        if (i == 0)
            path.moveTo(p0);
        else
            path.lineTo(p0);
        path.lineTo(p1);
    }
    path.closeSubpath();
    path.addEllipse(centre, 3.5, 3.5);
    path.setFillRule(Qt::OddEvenFill);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(path);
}

void menubarRect(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 1.8);
    p.drawRoundedRect(QRectF(2.5, 4.5, 19, 15), 2.5, 2.5);
    p.setBrush(c);
    p.drawRect(QRectF(2.5, 4.5, 19, 3.5));
}

void paintbrush(QPainter& p, const QColor& c) {
    p.save();
    p.translate(12, 12);
    p.rotate(45);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(-1.6, -11, 3.2, 12), 1.4, 1.4);
    p.drawRect(QRectF(-2.6, 1.5, 5.2, 2));
    QPainterPath tip;
    tip.moveTo(-2.6, 4.2);
    tip.lineTo(2.6, 4.2);
    tip.quadTo(2.6, 9, 0, 11);
    tip.quadTo(-2.6, 9, -2.6, 4.2);
    p.drawPath(tip);
    p.restore();
}

void waveform(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 1.8);
    QPainterPath path;
    path.moveTo(1.5, 12);
    path.lineTo(6.5, 12);
    path.lineTo(9, 5);
    path.lineTo(12.5, 19);
    path.lineTo(15.5, 9);
    path.lineTo(17.5, 12);
    path.lineTo(22.5, 12);
    p.drawPath(path);
}

void wrench(QPainter& p, const QColor& c) {
    // A wrench and a screwdriver crossed.
    p.save();
    p.translate(12, 12);
    p.rotate(-45);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(-1.5, -4, 3, 14), 1.5, 1.5);
    QPainterPath head;
    head.addEllipse(QPointF(0, -6.5), 4.2, 4.2);
    QPainterPath jaw;
    jaw.addRect(QRectF(-1.6, -11.5, 3.2, 5.5));
    p.drawPath(head.subtracted(jaw));
    p.restore();
    p.save();
    p.translate(12, 12);
    p.rotate(45);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(-2.2, 3, 4.4, 8), 1.5, 1.5);
    p.drawRect(QRectF(-0.8, -10, 1.6, 13));
    p.restore();
}

QPainterPath heartPath() {
    QPainterPath path;
    path.moveTo(12, 20.5);
    path.cubicTo(4, 15, 1.5, 11.5, 1.5, 8);
    path.cubicTo(1.5, 5, 4, 3, 6.8, 3);
    path.cubicTo(9, 3, 11, 4.5, 12, 6.5);
    path.cubicTo(13, 4.5, 15, 3, 17.2, 3);
    path.cubicTo(20, 3, 22.5, 5, 22.5, 8);
    path.cubicTo(22.5, 11.5, 20, 15, 12, 20.5);
    return path;
}

void heart(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 1.8);
    p.drawPath(heartPath());
}

void heartFill(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(heartPath());
}

void circlePath(QPainter& p, const QColor& c) {
    // Two arrows chasing each other round a circle.
    strokeStyle(p, c, 1.9);
    const QRectF ring(4, 4, 16, 16);
    p.drawArc(ring, 20 * 16, 140 * 16);
    p.drawArc(ring, 200 * 16, 140 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    auto arrow = [&](QPointF tip, double angleDeg) {
        p.save();
        p.translate(tip);
        p.rotate(angleDeg);
        QPolygonF head{QPointF(0, 0), QPointF(-4.2, -2.6), QPointF(-4.2, 2.6)};
        p.drawPolygon(head);
        p.restore();
    };
    arrow(QPointF(4.6, 9.5), 110);
    arrow(QPointF(19.4, 14.5), -70);
}

void cup(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    QPainterPath body;
    body.moveTo(3.5, 8);
    body.lineTo(17, 8);
    body.lineTo(16, 16);
    body.quadTo(15.5, 18, 13.5, 18);
    body.lineTo(7, 18);
    body.quadTo(5, 18, 4.5, 16);
    body.closeSubpath();
    p.drawPath(body);
    strokeStyle(p, c, 1.8);
    p.drawArc(QRectF(14.5, 9.5, 6, 5.5), -90 * 16, 180 * 16);
    p.drawLine(QPointF(2, 21), QPointF(19, 21));
    p.drawLine(QPointF(8, 2.5), QPointF(8, 5.5));
    p.drawLine(QPointF(12, 2.5), QPointF(12, 5.5));
}

void creditCard(QPainter& p, const QColor& c) {
    QPainterPath card;
    card.addRoundedRect(QRectF(1.5, 4.5, 21, 15), 2.5, 2.5);
    QPainterPath cut;
    cut.addRect(QRectF(1.5, 8, 21, 3));
    cut.addRoundedRect(QRectF(4.5, 14.5, 6, 2), 1, 1);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(card.subtracted(cut));
}

void gauge(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 2.0);
    p.drawArc(QRectF(2, 4, 20, 20), -20 * 16, 220 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (int i = 0; i < 5; ++i) {
        const double angle = (200 - i * 55) * std::numbers::pi / 180.0;
        p.drawEllipse(QPointF(12 + std::cos(angle) * 6.5, 14 - std::sin(angle) * 6.5), 1.1, 1.1);
    }
    strokeStyle(p, c, 2.2);
    p.drawLine(QPointF(12, 14), QPointF(12, 7.5));
    p.setBrush(c);
    p.drawEllipse(QPointF(12, 14), 1.8, 1.8);
}

void cpu(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 1.6);
    p.drawRoundedRect(QRectF(5, 5, 14, 14), 2, 2);
    p.setBrush(c);
    p.setPen(Qt::NoPen);
    p.drawRoundedRect(QRectF(8.5, 8.5, 7, 7), 1, 1);
    strokeStyle(p, c, 1.4);
    for (double x : {8.5, 12.0, 15.5}) {
        p.drawLine(QPointF(x, 2), QPointF(x, 5));
        p.drawLine(QPointF(x, 19), QPointF(x, 22));
        p.drawLine(QPointF(2, x), QPointF(5, x));
        p.drawLine(QPointF(19, x), QPointF(22, x));
    }
}

void memoryChip(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 1.6);
    p.drawRoundedRect(QRectF(2, 6.5, 20, 10), 1.5, 1.5);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (double x : {5.0, 9.5, 14.0})
        p.drawRect(QRectF(x, 9, 3, 5));
    strokeStyle(p, c, 1.4);
    for (double x = 4; x <= 20; x += 3)
        p.drawLine(QPointF(x, 16.5), QPointF(x, 19.5));
}

void thermometer(QPainter& p, const QColor& c) {
    strokeStyle(p, c, 1.6);
    QPainterPath tube;
    tube.addRoundedRect(QRectF(9.5, 2, 5, 14), 2.5, 2.5);
    QPainterPath bulb;
    bulb.addEllipse(QPointF(12, 17.5), 4.5, 4.5);
    p.drawPath(tube.united(bulb));
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(12, 17.5), 2.5, 2.5);
    p.drawRect(QRectF(11.1, 8, 1.8, 8));
}

void arrow(QPainter& p, const QColor& c, bool down) {
    strokeStyle(p, c, 2.0);
    const double tip = down ? 20 : 4;
    const double tail = down ? 4 : 20;
    const double wing = down ? 13 : 11;
    p.drawLine(QPointF(12, tail), QPointF(12, tip));
    p.drawLine(QPointF(12, tip), QPointF(5.5, wing));
    p.drawLine(QPointF(12, tip), QPointF(18.5, wing));
}

struct Symbol {
    QStringView name;
    Draw draw;
};

const std::array<Symbol, 17>& symbols() {
    static const std::array<Symbol, 17> table{{
        {u"gearshape", gear},
        {u"menubar.rectangle", menubarRect},
        {u"paintbrush", paintbrush},
        {u"waveform.path.ecg", waveform},
        {u"wrench.and.screwdriver", wrench},
        {u"heart", heart},
        {u"heart.fill", heartFill},
        {u"arrow.triangle.2.circlepath", circlePath},
        {u"cup.and.saucer.fill", cup},
        {u"creditcard.fill", creditCard},
        {u"gauge.with.dots.needle.50percent", gauge},
        {u"cpu", cpu},
        {u"memorychip", memoryChip},
        {u"thermometer.medium", thermometer},
        {u"arrow.down", [](QPainter& p, const QColor& c) { arrow(p, c, true); }},
        {u"arrow.up", [](QPainter& p, const QColor& c) { arrow(p, c, false); }},
        {u"checkmark",
         [](QPainter& p, const QColor& c) {
             strokeStyle(p, c, 2.4);
             p.drawPolyline(QPolygonF{QPointF(4, 12.5), QPointF(9.5, 18), QPointF(20, 6)});
         }},
    }};
    return table;
}

const Symbol* find(QStringView name) {
    for (const Symbol& symbol : symbols()) {
        if (symbol.name == name)
            return &symbol;
    }
    return nullptr;
}

} // namespace

QPixmap SymbolIcon::pixmap(QStringView name, const QColor& color, int size,
                           qreal devicePixelRatio) {
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    if (const Symbol* symbol = find(name)) {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 24.0, size / 24.0);
        symbol->draw(painter, color);
    }
    return pixmap;
}

QIcon SymbolIcon::icon(QStringView name, const QColor& color, int size) {
    QIcon icon;
    for (qreal ratio : {1.0, 2.0})
        icon.addPixmap(pixmap(name, color, size, ratio));
    return icon;
}

} // namespace lumetra

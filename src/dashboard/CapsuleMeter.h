#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

namespace lumetra {

// A capsule track with a capsule of `color` over clamp(percentage, 0, 100) % of its width.
class CapsuleMeter {
public:
    CapsuleMeter(double percentage, QColor color) : percentage_(percentage), color_(color) {}

    double fillWidth(double width) const;
    void paint(QPainter& painter, const QRectF& rect, const QColor& track) const;

private:
    double percentage_;
    QColor color_;
};

} // namespace lumetra

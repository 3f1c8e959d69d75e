#pragma once

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>

#include <span>

namespace lumetra {

// The history as a filled area, from the colour at 0.28 at the top to 0.02 at the bottom.
// Values outside the range are not clamped: they run off the canvas.
class AreaSparkline {
public:
    AreaSparkline(std::span<const double> values, double lower, double upper, QColor color)
        : values_(values), lower_(lower), upper_(upper), color_(color) {}

    void paint(QPainter& painter, const QRectF& rect) const;
    // The closed outline in `rect`; empty with fewer than two values.
    QPainterPath path(const QRectF& rect) const;

private:
    std::span<const double> values_;
    double lower_;
    double upper_;
    QColor color_;
};

} // namespace lumetra

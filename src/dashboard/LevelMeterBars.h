#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QSizeF>

namespace lumetra {

// Bars rising left to right, as many lit in `color` as the level reaches; the rest in the
// quaternary fill.
class LevelMeterBars {
public:
    LevelMeterBars(double percentage, QColor color, int segmentCount)
        : percentage_(percentage), color_(color), segmentCount_(segmentCount) {}

    QSizeF size() const;
    int litCount() const;
    // Bottom-aligned in `rect`, from its leading edge.
    void paint(QPainter& painter, const QRectF& rect, const QColor& unlit) const;

private:
    double percentage_;
    QColor color_;
    int segmentCount_;
};

} // namespace lumetra

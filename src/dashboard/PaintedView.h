#pragma once

#include "dashboard/DashboardTheme.h"

#include <QPainter>
#include <QRectF>

namespace lumetra {

// A piece of the dashboard painted with QPainter: a plain value holding what it draws. The
// dashboard asks each for its height at the width it gets, then paints it there.
class PaintedView {
public:
    virtual ~PaintedView() = default;
    virtual double heightFor(double width, const DashboardTheme& theme) const = 0;
    virtual void paint(QPainter& painter, const QRectF& rect,
                       const DashboardTheme& theme) const = 0;
};

} // namespace lumetra

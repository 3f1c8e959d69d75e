#include "dashboard/LevelMeterBars.h"

#include "dashboard/MeterGeometry.h"

namespace lumetra {

QSizeF LevelMeterBars::size() const {
    return {meter::meterWidth(segmentCount_), meter::meterHeight(segmentCount_)};
}

int LevelMeterBars::litCount() const {
    return meter::litCount(percentage_, segmentCount_);
}

void LevelMeterBars::paint(QPainter& painter, const QRectF& rect, const QColor& unlit) const {
    const int lit = litCount();
    const double bottom = rect.center().y() + size().height() / 2;
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < segmentCount_; ++i) {
        const double height = meter::barHeight(i);
        const QRectF bar(rect.left() + i * (meter::kBarWidth + meter::kBarSpacing), bottom - height,
                         meter::kBarWidth, height);
        painter.setBrush(i < lit ? color_ : unlit);
        painter.drawRoundedRect(bar, 1, 1);
    }
}

} // namespace lumetra

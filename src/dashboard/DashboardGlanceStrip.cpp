#include "dashboard/DashboardGlanceStrip.h"

#include "dashboard/CapsuleMeter.h"
#include "dashboard/LevelMeterBars.h"
#include "dashboard/MeterGeometry.h"
#include "dashboard/PaintHelpers.h"

#include <algorithm>

namespace lumetra {

double DashboardGlanceStrip::heightFor(double, const DashboardTheme& theme) const {
    return std::max(meter::meterHeight(kSegments),
                    paint::lineHeight(theme, kFontSize, QFont::DemiBold));
}

void DashboardGlanceStrip::paint(QPainter& painter, const QRectF& rect,
                                 const DashboardTheme& theme) const {
    double x = rect.left();
    const LevelMeterBars bars(cpu_.percentage.value_or(0), theme.level(levelColor(cpu_.percentage)),
                              kSegments);
    bars.paint(painter, QRectF(x, rect.top(), bars.size().width(), rect.height()),
               theme.quaternary());
    x += bars.size().width() + kSpacing;
    const double cpuWidth = paint::textWidth(theme, cpu_.valueText, kFontSize, QFont::DemiBold);
    paint::text(painter, theme, QRectF(x, rect.top(), cpuWidth + 1, rect.height()), cpu_.valueText,
                kFontSize, QFont::DemiBold, theme.primary());
    x += cpuWidth + kSpacing;
    const CapsuleMeter capsule(memory_.percentage.value_or(0),
                               theme.level(levelColor(memory_.percentage)));
    capsule.paint(painter,
                  QRectF(x, rect.center().y() - kCapsuleHeight / 2, kCapsuleWidth, kCapsuleHeight),
                  theme.quaternary());
    x += kCapsuleWidth + kSpacing;
    paint::text(painter, theme, QRectF(x, rect.top(), rect.right() - x, rect.height()),
                memory_.valueText, kFontSize, QFont::DemiBold, theme.primary());
}

} // namespace lumetra

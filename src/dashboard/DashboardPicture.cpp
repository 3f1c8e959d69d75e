#include "dashboard/DashboardPicture.h"

#include "appearance/GlassBackground.h"
#include "dashboard/DashboardView.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace lumetra {

namespace {

// Text sizes are logical pixels at 96 dpi, as on screen.
constexpr int kDotsPerMeter = 3780;

} // namespace

QImage DashboardPicture::render(DashboardView& view, const AppearanceConfiguration& appearance,
                                double devicePixelRatio) {
    view.resize(view.sizeHint());
    const QSize size = view.size();
    QImage image(static_cast<int>(std::lround(size.width() * devicePixelRatio)),
                 static_cast<int>(std::lround(size.height() * devicePixelRatio)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    renderInto(image, view, appearance);
    return image;
}

void DashboardPicture::renderInto(QImage& image, DashboardView& view,
                                  const AppearanceConfiguration& appearance) {
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(QPointF(0, 0), QSizeF(view.size()));
    QPainterPath shape;
    shape.addRoundedRect(area, kCornerRadius, kCornerRadius);
    painter.fillPath(shape, GlassBackground::compositeColor(appearance, view.isDark(), true));
    view.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
}

} // namespace lumetra

#include "menubar/StatusNotifierItemDriver.h"

#include "desktop/DBusMenu.h"
#include "desktop/PanelMenu.h"
#include "desktop/StatusNotifierItem.h"
#include "menubar/LabelFont.h"
#include "menubar/LiveIcon.h"
#include "model/AppId.h"

#include <QPainter>
#include <QSvgRenderer>

namespace lumetra {

namespace {

// The sizes the square icon is drawn at; hosts pick the nearest and scale.
constexpr int kSquareSizes[] = {16, 22, 24};
// How stale a tooltip may grow on hosts that cache it while the icon stays the same.
constexpr qint64 kToolTipIntervalMs = 10000;
// The wide label's height: a bar's usual icon size.
constexpr int kWideHeight = 24;
// Panels that draw wide icons are dark by default; the label is drawn light on them.
const QColor kWideTextColor(0xF2, 0xF2, 0xF7);
// The symbolic icon's fallback colour, for hosts that find no icon by its name: the light
// grey of GNOME's top bar text, which the label beside it is drawn in.
const QColor kSymbolicColor(0xEE, 0xEE, 0xEC);

QImage symbolicImage(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer svg(
        QStringLiteral(":/panel/%1.svg").arg(StatusNotifierItemDriver::symbolicIconName()));
    QPainter painter(&image);
    svg.render(&painter);
    // One colour, like a symbolic icon the theme recolours: keep the shape's alpha only.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), kSymbolicColor);
    return image;
}

} // namespace

StatusNotifierItemDriver::StatusNotifierItemDriver(const QDBusConnection& bus,
                                                   const PanelMenu& menu, PanelIconShape shape,
                                                   QObject* parent)
    : QObject(parent), shape_(shape), menu_(std::make_unique<DBusMenu>(menu)),
      item_(std::make_unique<StatusNotifierItem>(bus, *menu_)) {
    item_->setToolTip(QStringLiteral("lumetra"), {});
    sinceToolTip_.start();
    if (shape_ == PanelIconShape::symbolic) {
        // Drawn once: it never changes.
        StatusNotifierIconPixmaps pixmaps;
        for (const int size : kSquareSizes)
            pixmaps.append(iconPixmap(symbolicImage(size)));
        item_->setIcon(symbolicIconName(), pixmaps);
    }
}

StatusNotifierItemDriver::~StatusNotifierItemDriver() = default;

QString StatusNotifierItemDriver::symbolicIconName() {
    return QString::fromLatin1(kAppId) + QStringLiteral("-symbolic");
}

StatusNotifierIconPixmap StatusNotifierItemDriver::iconPixmap(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    QList<quint32> pixels;
    pixels.reserve(qsizetype(argb.width()) * argb.height());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const quint32*>(argb.constScanLine(y));
        pixels.append(QList<quint32>(line, line + argb.width()));
    }
    return StatusNotifierIconPixmap::fromArgb32(argb.width(), argb.height(), pixels);
}

void StatusNotifierItemDriver::show(const PanelItemContent& content) {
    item_->setLabel(content.label, content.guide);
    bool iconChanged = false;
    showIcon(content, iconChanged);
    item_->setToolTip(QStringLiteral("lumetra"), content.toolTip);
    // Trays that show tooltips read the whole item again on any New… signal (xfce4-panel:
    // some 6 kB a time), so a NewIcon carries the tooltip too.
    if (iconChanged) {
        item_->noteToolTipDelivered();
        sinceToolTip_.restart();
    } else if (!item_->isToolTipAnnounced() && sinceToolTip_.hasExpired(kToolTipIntervalMs)) {
        item_->announceToolTip();
        sinceToolTip_.restart();
    }
}

void StatusNotifierItemDriver::showIcon(const PanelItemContent& content, bool& changed) {
    // The image is drawn only when what it shows changed: most ticks move no bar by a pixel,
    // and the item sends NewIcon only when the drawn pixels differ.
    switch (shape_) {
    case PanelIconShape::symbolic:
        // Beside a label the host shows as text the icon says nothing the label does not: a
        // fixed one costs the host no new picture each second.
        return;
    case PanelIconShape::wide:
        if (content.pieces != drawnPieces_ || item_->iconPixmaps().isEmpty()) {
            drawnPieces_ = content.pieces;
            changed = item_->setIconPixmaps({iconPixmap(
                LabelImage::render(drawnPieces_, kWideHeight, labelFont(), kWideTextColor))});
        }
        return;
    case PanelIconShape::square:
        if (content.levels != drawnLevels_ || item_->iconPixmaps().isEmpty()) {
            drawnLevels_ = content.levels;
            StatusNotifierIconPixmaps pixmaps;
            for (const int size : kSquareSizes)
                pixmaps.append(iconPixmap(LiveIcon::render(size, drawnLevels_)));
            changed = item_->setIconPixmaps(pixmaps);
        }
        return;
    }
}

} // namespace lumetra

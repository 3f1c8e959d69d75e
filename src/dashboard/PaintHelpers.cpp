#include "dashboard/PaintHelpers.h"

#include "dashboard/DashboardIcons.h"
#include "dashboard/MeterGeometry.h"

#include <algorithm>
#include <cmath>

namespace lumetra::paint {

namespace {

void drawLine(QPainter& painter, const DashboardTheme& theme, const QRectF& rect,
              const QString& line, double size, QFont::Weight weight, const QColor& color,
              Qt::Alignment alignment) {
    const QFont& font = theme.font(size, weight);
    const QFontMetricsF& metrics = theme.metrics(size, weight);
    // Measured once; only a line that must be cut short is measured again.
    double width = theme.advance(line, size, weight);
    QString shown = line;
    if (width > rect.width() + 0.01) {
        shown = metrics.elidedText(line, Qt::ElideRight, rect.width());
        width = metrics.horizontalAdvance(shown);
    }
    double x = rect.left();
    if (alignment & Qt::AlignRight)
        x = rect.right() - width;
    else if (alignment & Qt::AlignHCenter)
        x = rect.left() + (rect.width() - width) / 2;
    const double baseline = rect.top() + (rect.height() - metrics.height()) / 2 + metrics.ascent();
    painter.setFont(font);
    painter.setPen(color);
    painter.drawStaticText(QPointF(x, baseline - metrics.ascent()),
                           theme.staticText(shown, size, weight));
}

} // namespace

void text(QPainter& painter, const DashboardTheme& theme, const QRectF& rect, const QString& line,
          double size, QFont::Weight weight, const QColor& color, Qt::Alignment alignment) {
    drawLine(painter, theme, rect, line, size, weight, color, alignment);
}

double fittedSize(const DashboardTheme& theme, const QString& line, double size,
                  QFont::Weight weight, double width, double minimumScale) {
    const double natural = theme.advance(line, size, weight);
    if (natural <= width || natural <= 0)
        return size;
    // The font engine draws whole pixel sizes: step down a pixel at a time until it fits.
    const double smallest = std::ceil(size * minimumScale);
    double shrunk = std::floor(size * width / natural);
    while (shrunk > smallest && theme.advance(line, shrunk, weight) > width)
        shrunk -= 1;
    return std::max(shrunk, smallest);
}

void shrinkingText(QPainter& painter, const DashboardTheme& theme, const QRectF& rect,
                   const QString& line, double size, QFont::Weight weight, const QColor& color,
                   double minimumScale, Qt::Alignment alignment) {
    text(painter, theme, rect, line,
         fittedSize(theme, line, size, weight, rect.width(), minimumScale), weight, color,
         alignment);
}

double lineHeight(const DashboardTheme& theme, double size, QFont::Weight weight) {
    return theme.metrics(size, weight).height();
}

double textWidth(const DashboardTheme& theme, const QString& line, double size,
                 QFont::Weight weight) {
    return theme.advance(line, size, weight);
}

void icon(QPainter& painter, const QRectF& rect, const QString& symbol, double size,
          const QColor& tint) {
    const double ratio = painter.device() ? painter.device()->devicePixelRatioF() : 1.0;
    const QPixmap pixmap = DashboardIcons::pixmap(symbol, size, tint, ratio);
    const QPointF topLeft(rect.left() + (rect.width() - size) / 2,
                          rect.top() + (rect.height() - size) / 2);
    painter.drawPixmap(QRectF(topLeft, QSizeF(size, size)), pixmap, QRectF(pixmap.rect()));
}

void capsule(QPainter& painter, const QRectF& rect, double fillWidth, const QColor& color,
             const QColor& track) {
    const double radius = rect.height() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(track);
    painter.drawRoundedRect(rect, radius, radius);
    if (!(fillWidth > 0))
        return;
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(rect.left(), rect.top(), fillWidth, rect.height()),
                            std::min(radius, fillWidth / 2), radius);
}

void levelBar(QPainter& painter, const QRectF& rect, double fraction, const QColor& color,
              const DashboardTheme& theme) {
    capsule(painter, rect, meter::capsuleFillWidth(fraction * 100, rect.width()), color,
            theme.quaternary());
}

void cardBackground(QPainter& painter, const QRectF& rect, double radius,
                    const DashboardTheme& theme) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.cardFill());
    painter.drawRoundedRect(rect, radius, radius);
}

} // namespace lumetra::paint

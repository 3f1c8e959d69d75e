#pragma once

#include "dashboard/DashboardTheme.h"

#include <QPainter>
#include <QRectF>
#include <QString>

namespace lumetra::paint {

// One line of text, vertically centred in `rect`, elided when it does not fit.
void text(QPainter& painter, const DashboardTheme& theme, const QRectF& rect, const QString& text,
          double size, QFont::Weight weight, const QColor& color,
          Qt::Alignment alignment = Qt::AlignLeft);

// Like text(), but the font first shrinks, down to `minimumScale` of its size, to fit.
void shrinkingText(QPainter& painter, const DashboardTheme& theme, const QRectF& rect,
                   const QString& text, double size, QFont::Weight weight, const QColor& color,
                   double minimumScale, Qt::Alignment alignment = Qt::AlignLeft);

// The size, at most `size` and at least `minimumScale` of it, at which `text` fits `width`.
double fittedSize(const DashboardTheme& theme, const QString& text, double size,
                  QFont::Weight weight, double width, double minimumScale);

double lineHeight(const DashboardTheme& theme, double size, QFont::Weight weight = QFont::Normal);
double textWidth(const DashboardTheme& theme, const QString& text, double size,
                 QFont::Weight weight = QFont::Normal);

// A symbol `size` square, centred in `rect`.
void icon(QPainter& painter, const QRectF& rect, const QString& symbol, double size,
          const QColor& tint);

// A capsule: a rounded track in `track` over the whole rect, and a rounded fill in `color`
// `fillWidth` wide from the leading edge.
void capsule(QPainter& painter, const QRectF& rect, double fillWidth, const QColor& color,
             const QColor& track);

// A level bar: a capsule in the quaternary fill, filled over `fraction` (0..1) of it.
void levelBar(QPainter& painter, const QRectF& rect, double fraction, const QColor& color,
              const DashboardTheme& theme);

// A rounded rectangle filled with the card fill.
void cardBackground(QPainter& painter, const QRectF& rect, double radius,
                    const DashboardTheme& theme);

} // namespace lumetra::paint

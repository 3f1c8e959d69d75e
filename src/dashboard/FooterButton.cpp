#include "dashboard/FooterButton.h"

#include "dashboard/PaintHelpers.h"

#include <QPainter>

#include <cmath>

namespace lumetra {

FooterButton::FooterButton(QString symbol, const QString& text,
                           std::function<const DashboardTheme&()> theme, QWidget* parent)
    : QAbstractButton(parent), symbol_(std::move(symbol)), theme_(std::move(theme)) {
    setText(text);
    if (!text.isEmpty())
        setAccessibleName(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

QSize FooterButton::sizeHint() const {
    const DashboardTheme& theme = theme_();
    double width = kIconSize;
    if (!text().isEmpty())
        width += kIconSpacing + paint::textWidth(theme, text(), kFontSize);
    const double height = std::max(kIconSize, paint::lineHeight(theme, kFontSize));
    return {static_cast<int>(std::ceil(width)) + 2, static_cast<int>(std::ceil(height)) + 4};
}

void FooterButton::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    update();
    QAbstractButton::enterEvent(event);
}

void FooterButton::leaveEvent(QEvent* event) {
    hovered_ = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void FooterButton::paintEvent(QPaintEvent*) {
    const DashboardTheme& theme = theme_();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QColor color = hovered_ || isDown() || hasFocus() ? theme.primary() : theme.secondary();
    const QRectF area = QRectF(rect()).adjusted(1, 0, -1, 0);
    paint::icon(painter, QRectF(area.left(), area.top(), kIconSize, area.height()), symbol_,
                kIconSize, color);
    if (!text().isEmpty()) {
        const double x = area.left() + kIconSize + kIconSpacing;
        paint::text(painter, theme, QRectF(x, area.top(), area.right() - x, area.height()), text(),
                    kFontSize, QFont::Normal, color);
    }
}

} // namespace lumetra

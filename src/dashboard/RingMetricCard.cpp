#include "dashboard/RingMetricCard.h"

#include "dashboard/PaintHelpers.h"
#include "dashboard/SectionHeader.h"

#include <algorithm>

namespace lumetra {

double RingMetricCard::fittingTitleSize(double width, const DashboardTheme& theme) const {
    return paint::fittedSize(theme, metric_.title, kTitleSize, QFont::DemiBold,
                             width - SectionHeader::kIconSize - SectionHeader::kIconSpacing,
                             kMinimumTitleScale);
}

double RingMetricCard::heightFor(double, const DashboardTheme& theme) const {
    double height =
        diameter_ + kSpacing +
        std::max(SectionHeader::kIconSize, paint::lineHeight(theme, kTitleSize, QFont::DemiBold));
    if (metric_.detailText)
        height += kSpacing + paint::lineHeight(theme, kDetailSize);
    return height;
}

void RingMetricCard::paint(QPainter& painter, const QRectF& rect,
                           const DashboardTheme& theme) const {
    const QRectF frame(rect.left() + (rect.width() - diameter_) / 2, rect.top(), diameter_,
                       diameter_);
    // The stroke stays inside the frame.
    const QRectF circle =
        frame.adjusted(lineWidth_ / 2, lineWidth_ / 2, -lineWidth_ / 2, -lineWidth_ / 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.quaternary(), lineWidth_, Qt::SolidLine, Qt::FlatCap));
    painter.drawEllipse(circle);
    const double fraction = std::clamp(metric_.percentage.value_or(0), 0.0, 100.0) / 100;
    if (fraction > 0) {
        painter.setPen(QPen(theme.level(levelColor(metric_.percentage)), lineWidth_, Qt::SolidLine,
                            Qt::RoundCap));
        // From the top (90°), clockwise (negative span), in 1/16 degree.
        painter.drawArc(circle, 90 * 16, -static_cast<int>(std::lround(fraction * 360 * 16)));
    }
    paint::shrinkingText(
        painter, theme,
        frame.adjusted(kValuePadding, kValuePadding, -kValuePadding, -kValuePadding),
        metric_.valueText, kValueSize, QFont::DemiBold, theme.primary(), 0.7, Qt::AlignHCenter);

    double y = frame.bottom() + kSpacing;
    const double titleHeight =
        std::max(SectionHeader::kIconSize, paint::lineHeight(theme, kTitleSize, QFont::DemiBold));
    // Title and symbol together, centred; a long title shrinks a little before it is cut.
    const double spacing = SectionHeader::kIconSpacing;
    const double available = rect.width() - SectionHeader::kIconSize - spacing;
    const double titleSize = paint::fittedSize(theme, metric_.title, titleSize_, QFont::DemiBold,
                                               available, kMinimumTitleScale);
    const double titleWidth =
        std::min(available, paint::textWidth(theme, metric_.title, titleSize, QFont::DemiBold));
    const double groupWidth = SectionHeader::kIconSize + spacing + titleWidth;
    const double x = rect.left() + (rect.width() - groupWidth) / 2;
    paint::icon(painter, QRectF(x, y, SectionHeader::kIconSize, titleHeight), metric_.systemImage,
                SectionHeader::kIconSize, theme.secondary());
    paint::text(painter, theme,
                QRectF(x + SectionHeader::kIconSize + spacing, y, titleWidth + 0.5, titleHeight),
                metric_.title, titleSize, QFont::DemiBold, theme.secondary());
    y += titleHeight;
    if (metric_.detailText) {
        y += kSpacing;
        paint::shrinkingText(
            painter, theme,
            QRectF(rect.left(), y, rect.width(), paint::lineHeight(theme, kDetailSize)),
            *metric_.detailText, kDetailSize, QFont::Normal, theme.secondary(), 0.7,
            Qt::AlignHCenter);
    }
}

} // namespace lumetra

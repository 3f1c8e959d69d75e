#include "dashboard/DiskVolumeRow.h"

#include "dashboard/DiskVolumeUsage.h"
#include "dashboard/PaintHelpers.h"
#include "format/ValueFormatters.h"

#include <algorithm>

namespace lumetra {

double DiskVolumeRow::heightFor(double, const DashboardTheme& theme) const {
    return std::max(kIconSize, paint::lineHeight(theme, kFontSize, QFont::Medium)) + kSpacing +
           kBarHeight + kSpacing + paint::lineHeight(theme, kBytesSize);
}

void DiskVolumeRow::paint(QPainter& painter, const QRectF& rect,
                          const DashboardTheme& theme) const {
    const DiskVolumeUsage usage = DiskVolumeUsage::of(volume_);
    const double lineHeight =
        std::max(kIconSize, paint::lineHeight(theme, kFontSize, QFont::Medium));
    double y = rect.top();
    paint::icon(painter, QRectF(rect.left(), y, kIconSize, lineHeight),
                volume_.isInternal ? QStringLiteral("internaldrive")
                                   : QStringLiteral("externaldrive"),
                kIconSize, theme.secondary());
    const QString percent = usage.percentText();
    const double percentWidth = paint::textWidth(theme, percent, kFontSize);
    const QRectF line(rect.left(), y, rect.width(), lineHeight);
    paint::text(painter, theme, line, percent, kFontSize, QFont::Normal, theme.secondary(),
                Qt::AlignRight);
    const double nameLeft = rect.left() + kIconSize + 4;
    paint::text(painter, theme,
                QRectF(nameLeft, y, rect.right() - percentWidth - 8 - nameLeft, lineHeight),
                volume_.name, kFontSize, QFont::Medium, theme.primary());
    y += lineHeight + kSpacing;
    paint::levelBar(painter, QRectF(rect.left(), y, rect.width(), kBarHeight), usage.fillFraction(),
                    theme.level(usage.fillColor()), theme);
    y += kBarHeight + kSpacing;
    paint::text(painter, theme,
                QRectF(rect.left(), y, rect.width(), paint::lineHeight(theme, kBytesSize)),
                formatUsedOverTotal(usage.usedBytes, usage.totalBytes), kBytesSize, QFont::Normal,
                theme.secondary());
}

} // namespace lumetra

#include "dashboard/DiskCardView.h"

#include "dashboard/DashboardCard.h"
#include "dashboard/DiskVolumeRow.h"
#include "dashboard/PaintHelpers.h"
#include "dashboard/SectionHeader.h"

#include <QCoreApplication>

namespace lumetra {

namespace {

SectionHeader header() {
    return {QCoreApplication::translate("DiskCardView", "Disks"), QStringLiteral("externaldrive")};
}

} // namespace

double DiskCardView::heightFor(double width, const DashboardTheme& theme) const {
    const double inner = width - 2 * DashboardCard::kPadding;
    double height =
        2 * DashboardCard::kPadding + header().heightFor(inner, theme) + DashboardCard::kSpacing;
    if (volumes_.empty()) {
        height += paint::lineHeight(theme, kEmptyTextSize);
    } else {
        for (const DiskVolume& volume : volumes_)
            height += DiskVolumeRow(volume).heightFor(inner, theme);
        height += kRowSpacing * static_cast<double>(volumes_.size() - 1);
    }
    for (const MetricRow& line : footer_)
        height += kRowSpacing + line.heightFor(inner, theme);
    return height;
}

void DiskCardView::paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const {
    paint::cardBackground(painter, rect, DashboardCard::kCornerRadius, theme);
    const QRectF inner = DashboardCard::contentRect(rect);
    const SectionHeader title = header();
    double y = inner.top();
    const double titleHeight = title.heightFor(inner.width(), theme);
    title.paint(painter, QRectF(inner.left(), y, inner.width(), titleHeight), theme);
    y += titleHeight + DashboardCard::kSpacing;
    if (volumes_.empty()) {
        paint::text(
            painter, theme,
            QRectF(inner.left(), y, inner.width(), paint::lineHeight(theme, kEmptyTextSize)),
            QCoreApplication::translate("DiskCardView", "No volumes found"), kEmptyTextSize,
            QFont::Normal, theme.secondary());
        y += paint::lineHeight(theme, kEmptyTextSize) + kRowSpacing;
    }
    for (const DiskVolume& volume : volumes_) {
        const DiskVolumeRow row(volume);
        const double height = row.heightFor(inner.width(), theme);
        row.paint(painter, QRectF(inner.left(), y, inner.width(), height), theme);
        y += height + kRowSpacing;
    }
    for (const MetricRow& line : footer_) {
        const double height = line.heightFor(inner.width(), theme);
        line.paint(painter, QRectF(inner.left(), y, inner.width(), height), theme);
        y += height + kRowSpacing;
    }
}

} // namespace lumetra

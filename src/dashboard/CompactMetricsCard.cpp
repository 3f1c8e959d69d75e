#include "dashboard/CompactMetricsCard.h"

#include "dashboard/CompactMetricRow.h"
#include "dashboard/DashboardCard.h"
#include "dashboard/PaintHelpers.h"
#include "dashboard/SectionHeader.h"

#include <QCoreApplication>

namespace lumetra {

namespace {

SectionHeader header() {
    return {QCoreApplication::translate("CompactMetricsCard", "Metrics"),
            QStringLiteral("gauge.with.dots.needle.50percent")};
}

} // namespace

double CompactMetricsCard::heightFor(double width, const DashboardTheme& theme) const {
    const double inner = width - 2 * DashboardCard::kPadding;
    double height = 2 * DashboardCard::kPadding + header().heightFor(inner, theme);
    for (const MetricPresentation& metric : metrics_)
        height += (&metric == &metrics_.front() ? DashboardCard::kSpacing : kRowSpacing) +
                  CompactMetricRow(metric).heightFor(inner, theme);
    return height;
}

QRectF CompactMetricsCard::rowRect(std::size_t index, const QRectF& rect,
                                   const DashboardTheme& theme) const {
    const QRectF inner = DashboardCard::contentRect(rect);
    double y = inner.top() + header().heightFor(inner.width(), theme) + DashboardCard::kSpacing;
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        const double height = CompactMetricRow(metrics_[i]).heightFor(inner.width(), theme);
        if (i == index)
            return {inner.left(), y, inner.width(), height};
        y += height + kRowSpacing;
    }
    return {};
}

void CompactMetricsCard::paint(QPainter& painter, const QRectF& rect,
                               const DashboardTheme& theme) const {
    paint::cardBackground(painter, rect, DashboardCard::kCornerRadius, theme);
    const QRectF inner = DashboardCard::contentRect(rect);
    const SectionHeader title = header();
    title.paint(
        painter,
        QRectF(inner.left(), inner.top(), inner.width(), title.heightFor(inner.width(), theme)),
        theme);
    for (std::size_t i = 0; i < metrics_.size(); ++i)
        CompactMetricRow(metrics_[i]).paint(painter, rowRect(i, rect, theme), theme);
}

} // namespace lumetra

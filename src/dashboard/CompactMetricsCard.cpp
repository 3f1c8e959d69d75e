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

CompactMetricsCard::CompactMetricsCard(std::vector<MetricPresentation> metrics,
                                       const DashboardTheme& theme)
    : metrics_(std::move(metrics)) {
    for (const MetricPresentation& metric : metrics_)
        extras_.emplace_back(metric, theme);
}

double CompactMetricsCard::heightFor(double width, const DashboardTheme& theme) const {
    const double inner = width - 2 * DashboardCard::kPadding;
    double height = 2 * DashboardCard::kPadding + header().heightFor(inner, theme);
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        height += (i == 0 ? DashboardCard::kSpacing : kRowSpacing) +
                  CompactMetricRow(metrics_[i]).heightFor(inner, theme);
        if (!extras_[i].isEmpty())
            height += DashboardCard::kSpacing + extras_[i].heightFor(inner, theme);
    }
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
        if (!extras_[i].isEmpty())
            y += extras_[i].heightFor(inner.width(), theme) + DashboardCard::kSpacing;
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
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        const QRectF row = rowRect(i, rect, theme);
        CompactMetricRow(metrics_[i]).paint(painter, row, theme);
        if (!extras_[i].isEmpty())
            extras_[i].paint(painter,
                             QRectF(row.left(), row.bottom() + DashboardCard::kSpacing, row.width(),
                                    extras_[i].heightFor(row.width(), theme)),
                             theme);
    }
}

} // namespace lumetra

#pragma once

#include "dashboard/MetricRow.h"
#include "dashboard/SectionHeader.h"

#include <vector>

namespace lumetra {

// A card of rates under a title: the network's download and upload, the disks' reads and
// writes. One row per rate: its name and, trailing, its value.
class RatesCardView final : public PaintedView {
public:
    RatesCardView(SectionHeader header, std::vector<MetricRow> rows)
        : header_(std::move(header)), rows_(std::move(rows)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

private:
    std::vector<const PaintedView*> pieces() const;

    SectionHeader header_;
    std::vector<MetricRow> rows_;
};

} // namespace lumetra

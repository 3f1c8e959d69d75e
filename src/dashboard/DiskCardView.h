#pragma once

#include "dashboard/MetricRow.h"
#include "dashboard/PaintedView.h"
#include "model/DiskVolume.h"

#include <vector>

namespace lumetra {

// "Disks": one row per volume in the sampler's order, or "No volumes found", then the
// footer's lines.
class DiskCardView final : public PaintedView {
public:
    // `footer`: lines under the volumes (the disks' reads and writes).
    explicit DiskCardView(DiskVolumeList volumes, std::vector<MetricRow> footer = {})
        : volumes_(std::move(volumes)), footer_(std::move(footer)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kRowSpacing = 8;
    static constexpr double kEmptyTextSize = 11;

private:
    DiskVolumeList volumes_;
    std::vector<MetricRow> footer_;
};

} // namespace lumetra

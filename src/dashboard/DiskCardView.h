#pragma once

#include "dashboard/PaintedView.h"
#include "model/DiskVolume.h"

namespace lumetra {

// "Disks": one row per volume in the sampler's order, or "No volumes found".
class DiskCardView final : public PaintedView {
public:
    explicit DiskCardView(DiskVolumeList volumes) : volumes_(std::move(volumes)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kRowSpacing = 8;
    static constexpr double kEmptyTextSize = 11;

private:
    DiskVolumeList volumes_;
};

} // namespace lumetra

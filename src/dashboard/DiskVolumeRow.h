#pragma once

#include "dashboard/PaintedView.h"
#include "model/DiskVolume.h"

namespace lumetra {

// One volume: its symbol, name and used share; a bar 4 high; used over total bytes.
class DiskVolumeRow final : public PaintedView {
public:
    explicit DiskVolumeRow(DiskVolume volume) : volume_(std::move(volume)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kFontSize = 11;
    static constexpr double kBytesSize = 10;
    static constexpr double kBarHeight = 4;
    static constexpr double kSpacing = 4;
    static constexpr double kIconSize = 12;

private:
    DiskVolume volume_;
};

} // namespace lumetra

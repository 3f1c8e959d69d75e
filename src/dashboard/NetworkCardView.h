#pragma once

#include "dashboard/PaintedView.h"

namespace lumetra {

// "Network": the download and upload rates of the latest sample.
class NetworkCardView final : public PaintedView {
public:
    NetworkCardView(double downloadBytesPerSecond, double uploadBytesPerSecond)
        : download_(downloadBytesPerSecond), upload_(uploadBytesPerSecond) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    // "↓ 1.2 MB/s" and "↑ 98 KB/s".
    static QString downloadText(double bytesPerSecond);
    static QString uploadText(double bytesPerSecond);

private:
    double download_;
    double upload_;
};

} // namespace lumetra

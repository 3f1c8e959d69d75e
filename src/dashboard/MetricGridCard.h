#pragma once

#include "dashboard/MetricPresentation.h"
#include "dashboard/PaintedView.h"

#include <vector>

namespace lumetra {

// The metrics in cells of `columns` equal columns: each cell an icon tile coloured by the
// cell's position (not by level), the value and the title.
class MetricGridCard final : public PaintedView {
public:
    MetricGridCard(std::vector<MetricPresentation> metrics, int columns = 2,
                   double spacing = kSpacing)
        : metrics_(std::move(metrics)), columns_(std::max(columns, 1)), spacing_(spacing) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    QRectF cellRect(std::size_t index, const QRectF& rect, const DashboardTheme& theme) const;
    // 18 points for fewer than 6 characters, else 14.
    static double valueFontSize(const QString& valueText);

    static constexpr double kSpacing = 8;
    static constexpr double kPadding = 10;
    static constexpr double kTileSize = 28;
    static constexpr double kTileCorner = 8;
    static constexpr double kTileSymbolSize = 13;
    static constexpr double kTitleSize = 10.5;
    static constexpr double kCellSpacing = 6;

private:
    double cellHeight(const DashboardTheme& theme) const;

    std::vector<MetricPresentation> metrics_;
    int columns_;
    double spacing_;
};

} // namespace lumetra

#pragma once

#include "dashboard/PaintedView.h"

#include <QString>

namespace lumetra {

// A card's title with its symbol, 11 semibold, secondary.
class SectionHeader final : public PaintedView {
public:
    SectionHeader(QString title, QString systemImage)
        : title_(std::move(title)), systemImage_(std::move(systemImage)) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kFontSize = 11;
    static constexpr double kIconSize = 12;
    static constexpr double kIconSpacing = 4;

private:
    QString title_;
    QString systemImage_;
};

} // namespace lumetra

#pragma once

#include "dashboard/PaintedView.h"

#include <QColor>
#include <QString>

namespace lumetra {

// A label and, trailing, its value in `valueColor`, 11 points.
class MetricRow final : public PaintedView {
public:
    MetricRow(QString title, QString value, QColor valueColor)
        : title_(std::move(title)), value_(std::move(value)), valueColor_(valueColor) {}

    double heightFor(double width, const DashboardTheme& theme) const override;
    void paint(QPainter& painter, const QRectF& rect, const DashboardTheme& theme) const override;

    static constexpr double kFontSize = 11;

private:
    QString title_;
    QString value_;
    QColor valueColor_;
};

} // namespace lumetra

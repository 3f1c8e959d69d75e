#pragma once

#include "dashboard/DashboardTheme.h"

#include <QAbstractButton>

#include <functional>

namespace lumetra {

// A borderless footer button: a symbol and an optional text in the caption size, secondary,
// brighter under the pointer. Painted by hand so it looks the same under every widget style.
class FooterButton final : public QAbstractButton {
    Q_OBJECT

public:
    FooterButton(QString symbol, const QString& text, std::function<const DashboardTheme&()> theme,
                 QWidget* parent = nullptr);

    QSize sizeHint() const override;

    static constexpr double kFontSize = 10;
    static constexpr double kIconSize = 11;
    static constexpr double kIconSpacing = 4;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QString symbol_;
    std::function<const DashboardTheme&()> theme_;
    bool hovered_ = false;
};

} // namespace lumetra

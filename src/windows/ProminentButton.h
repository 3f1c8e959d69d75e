#pragma once

#include <QPushButton>

namespace lumetra {

// A filled button in the accent colour with white text and an optional symbol: the main
// action of a page and the donation links.
class ProminentButton : public QPushButton {
    Q_OBJECT

public:
    explicit ProminentButton(const QString& text, const QString& symbol = {},
                             QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
};

} // namespace lumetra

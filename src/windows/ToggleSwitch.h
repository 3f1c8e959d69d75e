#pragma once

#include <QAbstractButton>

namespace lumetra {

// An on/off switch, the settings' toggle. Space toggles it like a check box.
class ToggleSwitch : public QAbstractButton {
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace lumetra

#pragma once

#include "appearance/AppearanceConfiguration.h"

#include <QWidget>

class QLabel;

namespace lumetra {

class GlassBackground;

// A small stand-in for the popover over a colourful desktop, drawn with the glass background
// the given configuration makes, so opacity, overlay and material are seen at once.
class BackgroundPreview : public QWidget {
    Q_OBJECT

public:
    explicit BackgroundPreview(QWidget* parent = nullptr);

    void setConfiguration(const AppearanceConfiguration& configuration, bool dark);
    const GlassBackground& glass() const { return *glass_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    GlassBackground* glass_;
    QLabel* title_;
    QLabel* figures_;
};

} // namespace lumetra

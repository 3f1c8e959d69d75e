#include "windows/TitleLabel.h"

namespace lumetra {

TitleLabel::TitleLabel(const QString& text, int pixelSize, QFont::Weight weight, QWidget* parent)
    : QLabel(text, parent) {
    QFont titleFont = font();
    titleFont.setPixelSize(pixelSize);
    titleFont.setWeight(weight);
    setFont(titleFont);
    setAlignment(Qt::AlignCenter);
}

} // namespace lumetra

#pragma once

#include <QFont>
#include <QLabel>

namespace lumetra {

// A window's or page's centred title in the window font, `pixelSize` high in `weight`.
class TitleLabel : public QLabel {
    Q_OBJECT

public:
    TitleLabel(const QString& text, int pixelSize, QFont::Weight weight, QWidget* parent = nullptr);
};

} // namespace lumetra

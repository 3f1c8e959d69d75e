#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QStringView>

namespace lumetra {

// The windows' small symbols, drawn for this project so they look the same on every desktop
// whatever its icon theme: named as the symbols they stand for ("gearshape", "heart.fill",
// "cpu", ...). An unknown name draws nothing.
class SymbolIcon {
public:
    static QIcon icon(QStringView name, const QColor& color, int size = 16);
    static QPixmap pixmap(QStringView name, const QColor& color, int size, qreal devicePixelRatio);
};

} // namespace lumetra

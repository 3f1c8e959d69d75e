#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QStringView>

namespace lumetra {

// The windows' small symbols, from the one icon set the dashboard and the panel label draw
// too: named as the symbols they stand for ("gearshape", "heart.fill", "cpu", ...). An
// unknown name draws nothing.
class SymbolIcon {
public:
    static QIcon icon(QStringView name, const QColor& color, int size = 16);
    static QPixmap pixmap(QStringView name, const QColor& color, int size, qreal devicePixelRatio);
};

} // namespace lumetra

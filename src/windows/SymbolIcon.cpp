#include "windows/SymbolIcon.h"

#include "dashboard/DashboardIcons.h"

namespace lumetra {

QPixmap SymbolIcon::pixmap(QStringView name, const QColor& color, int size,
                           qreal devicePixelRatio) {
    return DashboardIcons::pixmap(name.toString(), size, color, devicePixelRatio);
}

QIcon SymbolIcon::icon(QStringView name, const QColor& color, int size) {
    QIcon icon;
    for (qreal ratio : {1.0, 2.0})
        icon.addPixmap(pixmap(name, color, size, ratio));
    return icon;
}

} // namespace lumetra

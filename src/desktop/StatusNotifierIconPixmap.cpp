#include "desktop/StatusNotifierIconPixmap.h"

#include <QDBusArgument>

namespace lumetra {

StatusNotifierIconPixmap StatusNotifierIconPixmap::fromArgb32(int width, int height,
                                                              std::span<const quint32> pixels) {
    StatusNotifierIconPixmap pixmap{width, height, {}};
    pixmap.data.resize(static_cast<qsizetype>(pixels.size()) * 4);
    char* out = pixmap.data.data();
    for (const quint32 pixel : pixels) {
        *out++ = static_cast<char>(pixel >> 24);
        *out++ = static_cast<char>(pixel >> 16);
        *out++ = static_cast<char>(pixel >> 8);
        *out++ = static_cast<char>(pixel);
    }
    return pixmap;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierIconPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.data;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierIconPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.data;
    argument.endStructure();
    return argument;
}

} // namespace lumetra

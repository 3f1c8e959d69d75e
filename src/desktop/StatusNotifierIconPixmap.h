#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>

#include <span>

class QDBusArgument;

namespace lumetra {

// One image of a StatusNotifierItem's IconPixmap (D-Bus type (iiay)): width, height and the
// pixels as ARGB32, each pixel four bytes in network byte order (A, R, G, B), not
// premultiplied, row after row.
struct StatusNotifierIconPixmap {
    int width = 0;
    int height = 0;
    QByteArray data;

    // From pixels as 0xAARRGGBB words, row after row; `pixels` holds width × height words.
    static StatusNotifierIconPixmap fromArgb32(int width, int height,
                                               std::span<const quint32> pixels);

    bool operator==(const StatusNotifierIconPixmap&) const = default;
};

using StatusNotifierIconPixmaps = QList<StatusNotifierIconPixmap>;

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierIconPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierIconPixmap& pixmap);

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::StatusNotifierIconPixmap)
Q_DECLARE_METATYPE(lumetra::StatusNotifierIconPixmaps)

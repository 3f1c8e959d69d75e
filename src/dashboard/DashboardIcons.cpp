#include "dashboard/DashboardIcons.h"

#include <QFile>
#include <QHash>
#include <QIcon>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace lumetra {

namespace {

bool themeIconsEnabled = true;

QHash<QString, QPixmap>& cache() {
    static QHash<QString, QPixmap> pixmaps;
    return pixmaps;
}

// Only symbolic icons: they are one colour, so tinting keeps their shape; a full-colour icon
// tinted would be a blot.
const QHash<QString, QStringList>& themeTable() {
    static const QHash<QString, QStringList> table{
        {QStringLiteral("cpu"), {QStringLiteral("cpu-symbolic")}},
        {QStringLiteral("memorychip"), {QStringLiteral("memory-symbolic")}},
        {QStringLiteral("thermometer.medium"),
         {QStringLiteral("temperature-symbolic"), QStringLiteral("sensors-temperature-symbolic")}},
        {QStringLiteral("network"), {QStringLiteral("network-wired-symbolic")}},
        {QStringLiteral("gauge.with.dots.needle.50percent"),
         {QStringLiteral("utilities-system-monitor-symbolic")}},
        {QStringLiteral("externaldrive"), {QStringLiteral("drive-removable-media-symbolic")}},
        {QStringLiteral("internaldrive"), {QStringLiteral("drive-harddisk-symbolic")}},
        {QStringLiteral("gearshape"),
         {QStringLiteral("emblem-system-symbolic"), QStringLiteral("preferences-system-symbolic")}},
        {QStringLiteral("heart"), {QStringLiteral("emblem-favorite-symbolic")}},
        {QStringLiteral("power"), {QStringLiteral("system-shutdown-symbolic")}},
    };
    return table;
}

QImage render(const QString& symbol, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (themeIconsEnabled) {
        for (const QString& name : DashboardIcons::themeNames(symbol)) {
            if (!QIcon::hasThemeIcon(name))
                continue;
            QPainter painter(&image);
            QIcon::fromTheme(name).paint(&painter, image.rect());
            return image;
        }
    }
    const QString path = DashboardIcons::resourcePath(symbol);
    if (path.isEmpty())
        return image;
    QSvgRenderer renderer(path);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(image.rect()));
    return image;
}

} // namespace

QPixmap DashboardIcons::pixmap(const QString& symbol, double size, const QColor& tint,
                               double devicePixelRatio) {
    const QString key = QStringLiteral("%1|%2|%3|%4|%5")
                            .arg(symbol)
                            .arg(size)
                            .arg(tint.rgba(), 0, 16)
                            .arg(devicePixelRatio)
                            .arg(themeIconsEnabled);
    auto it = cache().constFind(key);
    if (it != cache().constEnd())
        return *it;
    const int pixels = std::max(1, static_cast<int>(std::lround(size * devicePixelRatio)));
    QImage image = render(symbol, pixels);
    {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), tint);
    }
    QPixmap pixmap = QPixmap::fromImage(std::move(image));
    pixmap.setDevicePixelRatio(devicePixelRatio);
    cache().insert(key, pixmap);
    return pixmap;
}

void DashboardIcons::setThemeIconsEnabled(bool enabled) {
    themeIconsEnabled = enabled;
}

QStringList DashboardIcons::themeNames(const QString& symbol) {
    return themeTable().value(symbol);
}

QString DashboardIcons::resourcePath(const QString& symbol) {
    const QString path = QStringLiteral(":/dashboard/icons/%1.svg").arg(symbol);
    return QFile::exists(path) ? path : QString();
}

} // namespace lumetra

// Renders the application icon's SVG into the PNG sizes of the hicolor theme at build time,
// so no hand-made bitmap can drift from the drawing.
//   lumetra_icon_renderer ICON.svg SIZE OUT.png [SIZE OUT.png ...]

#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char* argv[]) {
    if (argc < 4 || (argc - 2) % 2 != 0) {
        std::fprintf(stderr, "usage: %s ICON.svg SIZE OUT.png [SIZE OUT.png ...]\n", argv[0]);
        return 2;
    }
    QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
    if (!renderer.isValid()) {
        std::fprintf(stderr, "%s: cannot read the SVG file %s\n", argv[0], argv[1]);
        return 1;
    }
    for (int i = 2; i + 1 < argc; i += 2) {
        bool ok = false;
        const int size = QString::fromLocal8Bit(argv[i]).toInt(&ok);
        if (!ok || size <= 0 || size > 4096) {
            std::fprintf(stderr, "%s: '%s' is not an icon size\n", argv[0], argv[i]);
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            renderer.render(&painter, QRectF(0, 0, size, size));
        }
        if (!image.save(QString::fromLocal8Bit(argv[i + 1]), "PNG")) {
            std::fprintf(stderr, "%s: cannot write %s\n", argv[0], argv[i + 1]);
            return 1;
        }
    }
    return 0;
}

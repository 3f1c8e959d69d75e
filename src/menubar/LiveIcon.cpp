#include "menubar/LiveIcon.h"

#include "format/MetricCatalogue.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lumetra::LiveIcon {

QList<std::optional<double>> levels(const QList<MenuBarChipContent>& chips, double cpuUsage,
                                    double memoryPercentage) {
    QList<std::optional<double>> result;
    for (const MenuBarChipContent& chip : chips) {
        if (!describe(chip.metric).scaled)
            continue;
        result.append(chip.percentage);
        if (result.size() == 2)
            return result;
    }
    if (result.isEmpty())
        result = {cpuUsage, memoryPercentage};
    return result;
}

QColor color(LevelColor level) {
    return panelLevelColor(level).as<QColor>();
}

QImage render(int size, const QList<std::optional<double>>& levels) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (size < 4 || levels.isEmpty())
        return image;
    QPainter painter(&image);
    // Whole pixels only: at 16 px a blurred edge is half the bar.
    const int margin = std::max(1, size / 16);
    const int gap = std::max(2, size / 8);
    const int count = static_cast<int>(std::min<qsizetype>(levels.size(), 2));
    const int inner = size - 2 * margin;
    const int barWidth = (inner - gap * (count - 1)) / count;
    // Centre the pair when the division left pixels over.
    const int left = margin + (inner - (barWidth * count + gap * (count - 1))) / 2;
    const int rim = std::max(1, size / 24);
    for (int i = 0; i < count; ++i) {
        const QRect bar(left + i * (barWidth + gap), margin, barWidth, inner);
        // A grey track with a dark rim reads on light and dark panels alike.
        painter.fillRect(bar, QColor(0, 0, 0, 150));
        const QRect track = bar.adjusted(rim, rim, -rim, -rim);
        painter.fillRect(track, QColor(0x80, 0x80, 0x80, 110));
        const std::optional<double> level = levels[i];
        if (!level || std::isnan(*level))
            continue;
        const double fraction = std::clamp(*level, 0.0, 100.0) / 100.0;
        int filled = static_cast<int>(std::lround(fraction * track.height()));
        if (*level > 0 && filled == 0)
            filled = 1; // a busy core should never look idle
        if (filled == 0)
            continue;
        painter.fillRect(QRect(track.left(), track.bottom() + 1 - filled, track.width(), filled),
                         color(levelColor(level)));
    }
    return image;
}

} // namespace lumetra::LiveIcon

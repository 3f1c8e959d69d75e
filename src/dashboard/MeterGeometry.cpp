#include "dashboard/MeterGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumetra::meter {

int litCount(double percentage, int segmentCount) {
    if (segmentCount < 1 || !(percentage > 0))
        return 0;
    const double lit = std::ceil(std::min(percentage, 100.0) / 100 * segmentCount);
    return std::clamp(static_cast<int>(lit), 0, segmentCount);
}

double barHeight(int index) {
    return index * 1.4 + 5;
}

double meterHeight(int segmentCount) {
    return segmentCount < 1 ? 0 : barHeight(segmentCount - 1);
}

double meterWidth(int segmentCount) {
    return segmentCount < 1 ? 0 : segmentCount * kBarWidth + (segmentCount - 1) * kBarSpacing;
}

double capsuleFillWidth(double percentage, double width) {
    if (std::isnan(percentage))
        return 0;
    return std::clamp(percentage, 0.0, 100.0) / 100 * width;
}

int gridTileHue(int cellIndex) {
    static constexpr std::array<int, 6> kHues{250, 300, 45, 165, 210, 15};
    const int size = static_cast<int>(kHues.size());
    return kHues[static_cast<std::size_t>(((cellIndex % size) + size) % size)];
}

QColor gridTileColor(int cellIndex) {
    return QColor::fromHsvF(static_cast<float>(gridTileHue(cellIndex) / 360.0), 0.55f, 0.75f);
}

} // namespace lumetra::meter

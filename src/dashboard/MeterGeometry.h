#pragma once

#include <QColor>

namespace lumetra {

// The arithmetic of the glance strip's meters and the grid's tiles, apart from the painting
// so that tests can check it.
namespace meter {

// Lit segments of a LevelMeterBars: none at 0 and below, at least one above 0, all at 100.
int litCount(double percentage, int segmentCount);
// Bar i rises 1.4 above the one before it, from 5.
double barHeight(int index);
// The whole meter: as high as its last bar; 3 wide bars 2 apart.
double meterHeight(int segmentCount);
double meterWidth(int segmentCount);
constexpr double kBarWidth = 3;
constexpr double kBarSpacing = 2;

// The capsule's fill: clamp(percentage, 0, 100) / 100 × width.
double capsuleFillWidth(double percentage, double width);

// The grid tile's hue in degrees, by the cell's position (250, 300, 45, 165, 210, 15, …).
int gridTileHue(int cellIndex);
// Hue, saturation 0.55, brightness 0.75.
QColor gridTileColor(int cellIndex);

} // namespace meter

} // namespace lumetra

#pragma once

#include "format/LevelColor.h"
#include "format/MenuBarChipContent.h"

#include <QColor>
#include <QImage>
#include <QList>

#include <optional>

namespace lumetra {

// The panel item's square icon where a panel cannot show the label: the levels of the first
// two displayed metrics that have one (CPU, memory, temperature) as upright bars in their
// level colours, drawn for each size so they stay crisp from 16 to 24 pixels.
namespace LiveIcon {

// The levels to draw, from the label's chips: at most two; CPU and memory when no
// displayed metric has a level.
QList<std::optional<double>> levels(const QList<MenuBarChipContent>& chips, double cpuUsage,
                                    double memoryPercentage);

// A size × size image, transparent around the bars.
QImage render(int size, const QList<std::optional<double>>& levels);

// The fixed colours of the panel images (the panel's own palette is unknown): accent blue,
// orange, red and a grey for no value.
QColor color(LevelColor level);

} // namespace LiveIcon

} // namespace lumetra

#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

namespace lumetra {

// The topmost visible top-level X11 window at `device` (root coordinates, device pixels),
// other than those in `exclude`: where no window manager publishes a work area, the panel the user
// just clicked is found this way. Absent off X11 or when nothing is there.
std::optional<QRect> x11WindowAt(const QPoint& device, const QList<unsigned long>& exclude = {});

} // namespace lumetra

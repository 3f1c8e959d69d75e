#pragma once

#include "appearance/AppearanceConfiguration.h"

#include <QImage>

namespace lumetra {

class DashboardView;

// The dashboard as the popover shows it, over its opaque background with rounded corners,
// as an image: for `lumetra --snapshot`, the README's pictures and the reference images.
class DashboardPicture {
public:
    static constexpr double kCornerRadius = 16;

    // At the view's own size, `devicePixelRatio` image pixels per logical pixel.
    static QImage render(DashboardView& view, const AppearanceConfiguration& appearance,
                         double devicePixelRatio);
    // Paints into an image of the right size, already made (the benchmark's redraw).
    static void renderInto(QImage& image, DashboardView& view,
                           const AppearanceConfiguration& appearance);
};

} // namespace lumetra

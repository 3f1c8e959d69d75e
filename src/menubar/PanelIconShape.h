#pragma once

namespace lumetra {

// What the panel item's icon is, after what the desktop's panel draws.
enum class PanelIconShape {
    wide,     // the label as an image, drawn at its width (waybar)
    square,   // the live icon's level bars (trays that show no label)
    symbolic, // a fixed symbolic icon beside the label the host shows as text (AppIndicator)
};

} // namespace lumetra

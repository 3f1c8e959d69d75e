#pragma once

namespace lumetra {

// Whether a translucent window shows what lies behind it. On X11 that needs a compositing
// manager (the owner of _NET_WM_CM_Sn); without one, the transparent parts come out black,
// so windows draw opaque instead. Wayland always composites.
bool windowTranslucencyAvailable();

} // namespace lumetra

#pragma once

namespace lumetra {

// Whether a translucent window shows what lies behind it. On X11 that needs a compositing
// manager (the owner of _NET_WM_CM_Sn); without one, the transparent parts come out black,
// so windows draw opaque instead. Wayland always composites.
bool windowTranslucencyAvailable();

// Asks the compositor to blur what lies behind the X11 window `window` where it offers that
// (KWin lists _KDE_NET_WM_BLUR_BEHIND_REGION in _NET_SUPPORTED); returns whether it was
// asked. Elsewhere the window must stay legible without blur.
bool requestBlurBehind(unsigned long window);

} // namespace lumetra

#include "menubar/MenuBarPopoverWindowController.h"

#include <gtest/gtest.h>

namespace lumetra {
namespace {

// Where a grab cannot see every click, the popover takes the focus instead; where the app
// cannot place it at all, it becomes a titled window.
TEST(PopoverWindowKind, FollowsWhatThePlatformCanPlaceAndGrab) {
    using Kind = MenuBarPopoverWindowController::WindowKind;
    struct Case {
        const char* platform;
        bool waylandSession;
        Kind kind;
    };
    for (const Case& c :
         {Case{"xcb", false, Kind::Popup}, Case{"offscreen", false, Kind::Popup},
          Case{"offscreen", true, Kind::Popup}, Case{"xcb", true, Kind::FocusedPanel},
          Case{"wayland", true, Kind::TitledWindow}, Case{"wayland-egl", true, Kind::TitledWindow},
          Case{"wayland-brcm", false, Kind::TitledWindow}})
        EXPECT_EQ(MenuBarPopoverWindowController::windowKindFor(QString::fromLatin1(c.platform),
                                                                c.waylandSession),
                  c.kind)
            << c.platform << " " << c.waylandSession;
}

} // namespace
} // namespace lumetra

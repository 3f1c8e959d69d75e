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
        bool positionIgnored;
        Kind kind;
    };
    for (const Case& c :
         {Case{"xcb", false, false, Kind::Popup}, Case{"offscreen", false, false, Kind::Popup},
          Case{"offscreen", true, false, Kind::Popup}, Case{"xcb", true, false, Kind::FocusedPanel},
          // A compositor that centres managed X11 windows (sway).
          Case{"xcb", true, true, Kind::BypassingPanel},
          // Without Xwayland a grab sees every click, wherever it is placed.
          Case{"xcb", false, true, Kind::Popup}, Case{"wayland", true, false, Kind::TitledWindow},
          Case{"wayland", true, true, Kind::TitledWindow},
          Case{"wayland-egl", true, false, Kind::TitledWindow},
          Case{"wayland-brcm", false, false, Kind::TitledWindow}})
        EXPECT_EQ(MenuBarPopoverWindowController::windowKindFor(
                      QString::fromLatin1(c.platform), c.waylandSession, c.positionIgnored),
                  c.kind)
            << c.platform << " " << c.waylandSession << " " << c.positionIgnored;
}

// Scaled coordinates may come back a pixel or two off, and a report of an earlier request
// may come after the next one; a compositor that centres the window moves it by far more.
TEST(PopoverWindowKind, TellsAWindowMovedByTheCompositorFromOneMovedByUs) {
    struct Case {
        QList<QPoint> asked;
        QPoint got;
        bool asAsked;
    };
    for (const Case& c :
         {Case{{{1000, 32}}, {1000, 32}, true}, Case{{{1000, 32}}, {1001, 31}, true},
          Case{{{1000, 32}}, {998, 34}, true}, Case{{{1000, 32}}, {997, 32}, false},
          Case{{{1000, 32}}, {1000, 35}, false},
          // Above a bottom panel, the content grew: the first place reported late.
          Case{{{1000, 400}, {1000, 300}}, {1000, 400}, true},
          Case{{{1000, 400}, {1000, 300}}, {1000, 350}, false},
          // sway's centring of a 280 × 761 window on a 1280 × 800 screen.
          Case{{{1000, 32}}, {500, 34}, false}, Case{{{0, 32}}, {500, 84}, false},
          Case{{}, {0, 0}, false}})
        EXPECT_EQ(MenuBarPopoverWindowController::placedAsAsked(c.asked, c.got), c.asAsked)
            << c.asked.size() << " asked, got " << c.got.x() << "," << c.got.y();
}

} // namespace
} // namespace lumetra

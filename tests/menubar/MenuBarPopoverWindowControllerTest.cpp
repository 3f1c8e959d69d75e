#include "menubar/MenuBarPopoverWindowController.h"

#include <gtest/gtest.h>

namespace lumetra {
namespace {

// Where the app cannot place its popover by the panel, it becomes a titled window instead.
TEST(PopoverWindowKind, OnlyWaylandClientsCannotPlaceTheirWindows) {
    struct Case {
        const char* platform;
        bool places;
    };
    for (const Case& c : {Case{"xcb", true}, Case{"offscreen", true}, Case{"wayland", false},
                          Case{"wayland-egl", false}, Case{"wayland-brcm", false}})
        EXPECT_EQ(
            MenuBarPopoverWindowController::platformPlacesWindows(QString::fromLatin1(c.platform)),
            c.places)
            << c.platform;
}

} // namespace
} // namespace lumetra

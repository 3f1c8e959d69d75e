#include "menubar/PopoverPlacement.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// A 1920 × 1080 screen with a 22-high panel at the top (available from y 22) or at the bottom.
const QRect kTopPanel(0, 22, 1920, 1058);
const QRect kBottomPanel(0, 0, 1920, 1058);
const QRectF kXga(0, 0, 1024, 768);

TEST(PopoverPlacementTest, CentresUnderTheAnchorThenKeepsInsideTheScreen) {
    struct Case {
        QRectF anchor;
        QSizeF size;
        QRect available;
        QRect expected;
    };
    const Case cases[] = {
        // The item at x 1,000, 22 wide: 1,011 − 140 = 871; the top edge on the item's bottom.
        {{1000, 0, 22, 22}, {280, 400}, kTopPanel, {871, 22, 280, 400}},
        // A click point from the panel (Activate's x, y) is a 1 × 1 anchor.
        {{600, 10, 1, 1}, {280, 300}, kTopPanel, {461, 22, 280, 300}},
        // Near either edge the popover would overhang: it is pulled back inside.
        {{1900, 0, 22, 22}, {280, 400}, kTopPanel, {1640, 22, 280, 400}},
        {{4, 0, 22, 22}, {280, 400}, kTopPanel, {0, 22, 280, 400}},
        // A panel at the bottom: the popover opens above the item.
        {{1000, 1058, 22, 22}, {280, 400}, kBottomPanel, {871, 658, 280, 400}},
        // Taller than the screen: the top stays visible.
        {{1000, 0, 22, 22}, {280, 1200}, kTopPanel, {871, 22, 280, 1200}},
        // A second screen to the right of the first.
        {{2000, 0, 22, 22}, {280, 400}, {1920, 22, 1280, 1000}, {1920, 22, 280, 400}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(fitPopoverToScreen(popoverFrame(c.anchor, c.size), c.anchor, c.available),
                  c.expected)
            << "case " << &c - cases;
}

// A click from a panel, at any scale: a 2560 × 1600 screen at scale 2 (1280 × 800 in
// device-independent pixels) and to its right a 1920 × 1080 one at scale 1.
TEST(PopoverPlacementTest, DeviceToLogicalDividesByTheScaleFromTheScreensOrigin) {
    const QList<ScreenSpace> screens{{{0, 0, 1280, 800}, 2.0}, {{2560, 0, 1920, 1080}, 1.0}};
    const std::pair<QPoint, QPointF> cases[] = {
        {{900, 32}, {450, 16}}, {{2558, 1598}, {1279, 799}}, {{2600, 10}, {2600, 10}}};
    for (const auto& [device, logical] : cases) {
        EXPECT_EQ(deviceToLogical(device, screens), logical) << device.x();
        EXPECT_EQ(logicalToDevice(logical, screens), device) << device.x();
    }
}

TEST(PopoverPlacementTest, PanelAtClickIsTheBandOutsideTheWorkAreaOrTheWindowClicked) {
    struct Case {
        const char* name;
        QPointF click;
        QRectF available;
        QRectF windowUnderClick;
        QRectF panel;
    };
    const Case cases[] = {
        {"top", {12, 16}, {0, 48, 1024, 720}, {}, {0, 0, 1024, 48}},
        {"bottom", {900, 760}, {0, 0, 1024, 740}, {}, {0, 740, 1024, 28}},
        {"left", {10, 400}, {40, 0, 984, 768}, {}, {0, 0, 40, 768}},
        {"right", {1010, 400}, {0, 0, 990, 768}, {}, {990, 0, 34, 768}},
        // No work area: the panel window the click fell on (xfce4-panel without a window
        // manager).
        {"panel window", {12, 16}, kXga, {0, 0, 1024, 48}, {0, 0, 1024, 48}},
        {"nothing known", {512.5, 300.5}, kXga, {}, {}},
        // Nothing known, but the click is near an edge: a band twice as thick as the distance
        // to the far side of the clicked pixel.
        {"right edge", {1010.5, 400.5}, kXga, {}, {996, 0, 28, 768}},
        {"left edge", {15.5, 400.5}, kXga, {}, {0, 0, 32, 768}},
        // A desktop (a window as large as the screen) stacked over a top panel is no panel:
        // pixel row 11, so 12 from the edge.
        {"desktop over top panel", {600.5, 11.5}, kXga, kXga, {0, 0, 1024, 24}},
        // In a corner the bottom wins over the nearer side.
        {"corner", {1019.5, 748.5}, kXga, {}, {0, 728, 1024, 40}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(panelAt(c.click, kXga, c.available, c.windowUnderClick), c.panel) << c.name;
    // Plasma's 44-high bottom panel, its icon's centre at (1063, 778) on a 1280 × 800 screen.
    const QRectF screen(0, 0, 1280, 800);
    EXPECT_EQ(panelAt({1063.5, 778.5}, screen, screen, {}), QRectF(0, 756, 1280, 44));
}

TEST(PopoverPlacementTest, PlacedBesidePanelOffThePanelWithinTheScreen) {
    struct Case {
        QPointF click;
        QSizeF size;
        QRectF panel;
        QRectF available;
        QRect expected;
    };
    const Case cases[] = {
        // xfce4-panel, 48 high at the top, no work area: below it, at the left edge.
        {{12, 16}, {280, 600}, {0, 0, 1024, 48}, kXga, {0, 48, 280, 600}},
        // Centred on the click below a top panel.
        {{600, 10}, {280, 300}, {0, 0, 1024, 22}, {0, 22, 1024, 746}, {460, 22, 280, 300}},
        // A bottom panel: above it, pulled in from the right edge.
        {{1000, 750}, {280, 400}, {0, 724, 1024, 44}, {0, 0, 1024, 724}, {744, 324, 280, 400}},
        // Left and right panels.
        {{20, 300}, {280, 200}, {0, 0, 48, 768}, {48, 0, 976, 768}, {48, 200, 280, 200}},
        {{1000, 700}, {280, 200}, {976, 0, 48, 768}, {0, 0, 976, 768}, {696, 568, 280, 200}},
        // Taller than the room below the panel: cut to it (the dashboard then scrolls).
        {{600, 10}, {280, 800}, {0, 0, 1024, 24}, {0, 24, 1024, 744}, {460, 24, 280, 744}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        const QRect placed = placeBesidePanel(c.click, c.size, c.panel, kXga, c.available);
        EXPECT_EQ(placed, c.expected);
        EXPECT_TRUE(kXga.toRect().contains(placed));
        EXPECT_FALSE(placed.intersects(c.panel.toRect()));
    }
}

} // namespace

#include "menubar/PopoverPlacement.h"

#include "support/Cases.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

struct PlacementCase {
    std::string name;
    QRectF anchor;
    QSizeF size;
    QRect available;
    QRect expected;
};

class PopoverPlacementTest : public ::testing::TestWithParam<PlacementCase> {};

TEST_P(PopoverPlacementTest, CentresUnderTheAnchorThenKeepsInsideTheScreen) {
    const PlacementCase& c = GetParam();
    const QRectF frame = popoverFrame(c.anchor, c.size);
    EXPECT_EQ(fitPopoverToScreen(frame, c.anchor, c.available), c.expected);
}

// A 1920 × 1080 screen with a 22-high panel at the top (available from y 22) or at the bottom.
const QRect kTopPanel(0, 22, 1920, 1058);
const QRect kBottomPanel(0, 0, 1920, 1058);

INSTANTIATE_TEST_SUITE_P(
    Cases, PopoverPlacementTest,
    ::testing::Values(
        // The item at x 1,000, 22 wide: 1,011 − 140 = 871; the top edge on the item's bottom.
        PlacementCase{"ItemAt1000", {1000, 0, 22, 22}, {280, 400}, kTopPanel, {871, 22, 280, 400}},
        // A click point from the panel (Activate's x, y) is a 1 × 1 anchor.
        PlacementCase{"ClickPoint", {600, 10, 1, 1}, {280, 300}, kTopPanel, {461, 22, 280, 300}},
        // Near the right edge the popover would overhang by 129: it is pulled back inside.
        PlacementCase{"RightEdge", {1900, 0, 22, 22}, {280, 400}, kTopPanel, {1640, 22, 280, 400}},
        PlacementCase{"LeftEdge", {4, 0, 22, 22}, {280, 400}, kTopPanel, {0, 22, 280, 400}},
        // A panel at the bottom: the popover opens above the item.
        PlacementCase{
            "BottomPanel", {1000, 1058, 22, 22}, {280, 400}, kBottomPanel, {871, 658, 280, 400}},
        // Taller than the screen: the top stays visible.
        PlacementCase{
            "TallerThanScreen", {1000, 0, 22, 22}, {280, 1200}, kTopPanel, {871, 22, 280, 1200}},
        // A second screen to the right of the first.
        PlacementCase{"SecondScreen",
                      {2000, 0, 22, 22},
                      {280, 400},
                      {1920, 22, 1280, 1000},
                      {1920, 22, 280, 400}}),
    lumetra::testing::byName);

// ---- a click from a panel, at any scale ---------------------------------------------------

struct DeviceCase {
    std::string name;
    QPoint device;
    QPointF logical;
};

class DeviceToLogical : public ::testing::TestWithParam<DeviceCase> {};

// A 2560 × 1600 screen at scale 2 (1280 × 800 in device-independent pixels) and to its right
// a 1920 × 1080 one at scale 1.
const QList<ScreenSpace> kScreens{{{0, 0, 1280, 800}, 2.0}, {{2560, 0, 1920, 1080}, 1.0}};

TEST_P(DeviceToLogical, DividesByTheScaleFromTheScreensOrigin) {
    EXPECT_EQ(deviceToLogical(GetParam().device, kScreens), GetParam().logical);
    EXPECT_EQ(logicalToDevice(GetParam().logical, kScreens), GetParam().device);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DeviceToLogical,
    ::testing::Values(DeviceCase{"ScaledScreen", {900, 32}, {450, 16}},
                      DeviceCase{"ScaledScreenFarCorner", {2558, 1598}, {1279, 799}},
                      DeviceCase{"UnscaledSecondScreen", {2600, 10}, {2600, 10}}),
    lumetra::testing::byName);

struct PanelCase {
    std::string name;
    QPointF click;
    QRectF screen;
    QRectF available;
    QRectF windowUnderClick;
    QRectF panel;
};

class PanelAtClick : public ::testing::TestWithParam<PanelCase> {};

TEST_P(PanelAtClick, IsTheBandOutsideTheWorkAreaOrTheWindowClicked) {
    const PanelCase& c = GetParam();
    EXPECT_EQ(panelAt(c.click, c.screen, c.available, c.windowUnderClick), c.panel);
}

const QRectF kXga(0, 0, 1024, 768);

INSTANTIATE_TEST_SUITE_P(
    Cases, PanelAtClick,
    ::testing::Values(
        PanelCase{"TopBand", {12, 16}, kXga, {0, 48, 1024, 720}, {}, {0, 0, 1024, 48}},
        PanelCase{"BottomBand", {900, 760}, kXga, {0, 0, 1024, 740}, {}, {0, 740, 1024, 28}},
        PanelCase{"LeftBand", {10, 400}, kXga, {40, 0, 984, 768}, {}, {0, 0, 40, 768}},
        PanelCase{"RightBand", {1010, 400}, kXga, {0, 0, 990, 768}, {}, {990, 0, 34, 768}},
        // No work area: the panel window the click fell on (xfce4-panel without a window
        // manager).
        PanelCase{
            "NoWorkAreaPanelWindow", {12, 16}, kXga, kXga, {0, 0, 1024, 48}, {0, 0, 1024, 48}},
        // A desktop or a maximised window under the click is no panel.
        PanelCase{"NoWorkAreaFullScreenWindow", {512.5, 300.5}, kXga, kXga, kXga, {}},
        PanelCase{"NoWorkAreaNoWindow", {512.5, 300.5}, kXga, kXga, {}, {}},
        // Nothing known, but the click is near an edge: a band twice as thick as the distance
        // to the far side of the clicked pixel. Plasma's 44-high bottom panel, its icon's
        // centre at (1063, 778) on a 1280 × 800 screen:
        PanelCase{"NoWorkAreaNoWindowBottomEdge",
                  {1063.5, 778.5},
                  {0, 0, 1280, 800},
                  {0, 0, 1280, 800},
                  {},
                  {0, 756, 1280, 44}},
        // The desktop stacked over a top panel: pixel row 11, so 12 from the edge.
        PanelCase{
            "NoWorkAreaDesktopOverTopPanel", {600.5, 11.5}, kXga, kXga, kXga, {0, 0, 1024, 24}},
        PanelCase{
            "NoWorkAreaNoWindowRightEdge", {1010.5, 400.5}, kXga, kXga, {}, {996, 0, 28, 768}},
        PanelCase{"NoWorkAreaNoWindowLeftEdge", {15.5, 400.5}, kXga, kXga, {}, {0, 0, 32, 768}},
        // In a corner the bottom wins over the nearer side.
        PanelCase{"NoWorkAreaNoWindowCorner", {1019.5, 748.5}, kXga, kXga, {}, {0, 728, 1024, 40}}),
    lumetra::testing::byName);

struct BesideCase {
    std::string name;
    QPointF click;
    QSizeF size;
    QRectF panel;
    QRectF screen;
    QRectF available;
    QRect expected;
};

class PlaceBesidePanel : public ::testing::TestWithParam<BesideCase> {};

TEST_P(PlaceBesidePanel, OpensOffThePanelWithinTheScreen) {
    const BesideCase& c = GetParam();
    const QRect placed = placeBesidePanel(c.click, c.size, c.panel, c.screen, c.available);
    EXPECT_EQ(placed, c.expected);
    EXPECT_TRUE(c.screen.toRect().contains(placed));
    EXPECT_FALSE(placed.intersects(c.panel.toRect()));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PlaceBesidePanel,
    ::testing::Values(
        // xfce4-panel, 48 high at the top, clicked at (12, 16): below it, at the left edge.
        BesideCase{"TopPanelNoWorkArea",
                   {12, 16},
                   {280, 600},
                   {0, 0, 1024, 48},
                   kXga,
                   kXga,
                   {0, 48, 280, 600}},
        BesideCase{"TopPanelCentredOnClick",
                   {600, 10},
                   {280, 300},
                   {0, 0, 1920, 22},
                   {0, 0, 1920, 1080},
                   {0, 22, 1920, 1058},
                   {460, 22, 280, 300}},
        // Plasma's bottom panel: above it, pulled in from the right edge.
        BesideCase{"BottomPanel",
                   {1200, 780},
                   {280, 400},
                   {0, 756, 1280, 44},
                   {0, 0, 1280, 800},
                   {0, 0, 1280, 756},
                   {1000, 356, 280, 400}},
        BesideCase{"LeftPanel",
                   {20, 300},
                   {280, 200},
                   {0, 0, 48, 768},
                   kXga,
                   {48, 0, 976, 768},
                   {48, 200, 280, 200}},
        BesideCase{"RightPanel",
                   {1000, 700},
                   {280, 200},
                   {976, 0, 48, 768},
                   kXga,
                   {0, 0, 976, 768},
                   {696, 568, 280, 200}},
        // A 1280 × 1024 screen at scale 2 is 640 × 512: the 559-high dashboard is cut to the
        // room below the panel and scrolls.
        BesideCase{"TallerThanTheRoom",
                   {600, 10},
                   {280, 559},
                   {0, 0, 640, 24},
                   {0, 0, 640, 512},
                   {0, 24, 640, 488},
                   {360, 24, 280, 488}}),
    lumetra::testing::byName);

} // namespace

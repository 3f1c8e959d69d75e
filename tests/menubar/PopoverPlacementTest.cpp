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

TEST(PopoverFrameTest, IsThePlainArithmeticWithoutClamping) {
    EXPECT_EQ(popoverFrame({1000, 0, 22, 22}, {280, 400}), QRectF(871, 22, 280, 400));
    EXPECT_EQ(popoverFrame({1900, 0, 22, 22}, {280, 400}), QRectF(1771, 22, 280, 400));
}

} // namespace

#include "menubar/MenuBarPopoverContent.h"

#include "dashboard/DashboardView.h"
#include "dashboard/FooterButton.h"
#include "support/AppStateHarness.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

struct Popover {
    lumetra::testing::AppStateHarness h;
    SettingsStore& settings = *h.settings;
    MenuBarPopoverContent content{h.state()};
};

TEST(MenuBarPopoverContentTest, HostsTheDashboardAndFollowsTheCardStyleAndTheme) {
    Popover popover;
    auto* dashboard = popover.content.findChild<DashboardView*>();
    ASSERT_NE(dashboard, nullptr);
    popover.settings.setMetricCardStyle(MetricCardStyle::classic);
    const int classic = popover.content.preferredHeight();
    popover.settings.setMetricCardStyle(MetricCardStyle::compactRow);
    EXPECT_LT(popover.content.preferredHeight(), classic);
    EXPECT_EQ(popover.content.preferredHeight(), dashboard->sizeHint().height());

    popover.settings.setThemePreference(ThemePreference::dark);
    EXPECT_TRUE(dashboard->isDark());
    popover.settings.setThemePreference(ThemePreference::light);
    EXPECT_FALSE(dashboard->isDark());
}

TEST(MenuBarPopoverContentTest, FooterRequestsReachThePopover) {
    Popover popover;
    QSignalSpy settings(&popover.content, &MenuBarPopoverContent::settingsRequested);
    QSignalSpy support(&popover.content, &MenuBarPopoverContent::supportRequested);
    QSignalSpy quit(&popover.content, &MenuBarPopoverContent::quitRequested);
    for (FooterButton* button : popover.content.findChildren<FooterButton*>())
        button->click();
    EXPECT_EQ(settings.count(), 1);
    EXPECT_EQ(support.count(), 1);
    EXPECT_EQ(quit.count(), 1);
}

} // namespace

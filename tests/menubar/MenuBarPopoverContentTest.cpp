#include "menubar/MenuBarPopoverContent.h"

#include "appearance/AppearanceManager.h"
#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "dashboard/DashboardView.h"
#include "dashboard/FooterButton.h"
#include "desktop/LoginItemService.h"
#include "settings/SettingsStore.h"
#include "settings/SettingsTestSupport.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateChecking.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

struct NoLoginItem : LoginItemService {
    bool isEnabled() const override { return false; }
    std::optional<QString> registerItem() override { return std::nullopt; }
    std::optional<QString> unregisterItem() override { return std::nullopt; }
};

struct NoUpdates : UpdateChecking, UpdateAlertPresenting {
    void fetchLatestManifest(Completion) override {}
    int present(const UpdateAlert&) override { return 0; }
    void openURL(const QUrl&) override {}
};

struct Popover {
    lumetra::testing::LoadedStore settings;
    AppearanceManager appearance;
    NoUpdates updates;
    NoLoginItem loginItem;
    AppState state{AppState::Services{settings.store, appearance, updates, updates, loginItem},
                   std::make_unique<SystemMonitor>(SystemMonitor::Providers{}, 1, 1)};
    MenuBarPopoverContent content{state};
};

TEST(MenuBarPopoverContentTest, HostsTheDashboardAndFollowsTheCardStyleAndTheme) {
    Popover popover;
    auto* dashboard = popover.content.findChild<DashboardView*>();
    ASSERT_NE(dashboard, nullptr);
    popover.settings.store.setMetricCardStyle(MetricCardStyle::classic);
    const int classic = popover.content.preferredHeight();
    popover.settings.store.setMetricCardStyle(MetricCardStyle::compactRow);
    EXPECT_LT(popover.content.preferredHeight(), classic);
    EXPECT_EQ(popover.content.preferredHeight(), dashboard->sizeHint().height());

    popover.settings.store.setThemePreference(ThemePreference::dark);
    EXPECT_TRUE(dashboard->isDark());
    popover.settings.store.setThemePreference(ThemePreference::light);
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

#include "windows/SettingsView.h"
#include "windows/SupportWindowController.h"
#include "windows/WelcomeView.h"
#include "windows/WindowsTestSupport.h"

#include <QDir>

using namespace lumetra;
using namespace lumetra::testing;

namespace {

// Pictures of every window for a person to look at, written only when LUMETRA_SHOTS_DIR names
// a folder: each settings tab (Appearance also in the custom mode), both welcome pages and
// the support window, in the light and the dark theme.
TEST(WindowScreenshots, EveryTabAndWindowInBothThemes) {
    const QString dir = qEnvironmentVariable("LUMETRA_SHOTS_DIR");
    if (dir.isEmpty())
        GTEST_SKIP() << "set LUMETRA_SHOTS_DIR to write the screenshots";
    QDir().mkpath(dir);
    for (ThemePreference theme : {ThemePreference::light, ThemePreference::dark}) {
        WindowsHarness h;
        h.settings->setThemePreference(theme);
        const QString suffix = theme == ThemePreference::dark ? "-dark" : "-light";
        auto save = [&](QWidget& widget, const QString& name) {
            settle();
            EXPECT_TRUE(widget.grab().save(dir + "/" + name + suffix + ".png"));
        };

        SettingsView settings(*h.state);
        settings.present();
        const QStringList names{"settings-1-general", "settings-2-menubar", "settings-3-appearance",
                                "settings-4-monitoring", "settings-5-advanced"};
        for (int i = 0; i < settings.count(); ++i) {
            settings.setCurrentIndex(i);
            // The whole tab, even where the screen would make it scroll.
            settings.resize(SettingsView::kWidth, settings.preferredHeight(i));
            save(settings, names.at(i));
        }
        h.settings->setAppearanceMode(AppearanceMode::custom);
        settings.setCurrentIndex(2);
        settings.resize(SettingsView::kWidth, settings.preferredHeight(2));
        save(settings, "settings-3-appearance-custom");

        WelcomeView welcome(*h.state, [] {});
        welcome.show();
        save(welcome, "welcome-1");
        welcome.setStep(WelcomeView::Step::configure);
        save(welcome, "welcome-2");

        SupportWindowController support;
        support.show(*h.state);
        save(*support.window(), "support");
    }
}

} // namespace

#include "core/StoredUpdateCheckSettings.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

TEST(StoredUpdateCheckSettingsTest, StampsRoundTripThroughTheSettingsFile) {
    QTemporaryDir dir;
    const QString path = dir.path() + "/settings.json";
    const Instant stamp = Instant(std::chrono::milliseconds(1'795'000'000'123));
    {
        UserDefaults defaults(path);
        SettingsStore store(defaults);
        StoredUpdateCheckSettings settings(store);
        EXPECT_TRUE(settings.automaticallyCheckForUpdates());
        EXPECT_FALSE(settings.lastUpdateCheckDate());
        settings.setLastUpdateCheckDate(stamp);
    }
    UserDefaults defaults(path);
    SettingsStore store(defaults);
    EXPECT_EQ(StoredUpdateCheckSettings(store).lastUpdateCheckDate(), stamp);
}

} // namespace

#include "core/StoredUpdateCheckSettings.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// A stamp goes through the settings file to the millisecond. The file holds years 0 to 9999,
// the clock only about 1677 to 2262: dates beyond read as the clock's ends instead of
// overflowing it.
TEST(StoredUpdateCheckSettingsTest, StampsRoundTripAndDatesBeyondTheClockReadAsItsEnds) {
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
    const StoredUpdateCheckSettings settings(store);
    EXPECT_EQ(settings.lastUpdateCheckDate(), stamp);
    for (const auto& [date, expected] :
         {std::pair{QDateTime(QDate(4052, 11, 21), QTime(8, 30), Qt::UTC), Instant::max()},
          {QDateTime(QDate(1600, 2, 29), QTime(12, 0), Qt::UTC), Instant::min()},
          {QDateTime(QDate(2262, 4, 11), QTime(0, 0), Qt::UTC),
           Instant(std::chrono::milliseconds(9'223'286'400'000))}}) {
        store.setLastUpdateCheckDate(date);
        EXPECT_EQ(settings.lastUpdateCheckDate(), expected)
            << date.toString(Qt::ISODate).toStdString();
    }
}

} // namespace

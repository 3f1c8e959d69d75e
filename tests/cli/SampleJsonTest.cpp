#include "cli/SampleJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

QJsonObject written(const SystemMetrics& metrics) {
    JsonWriter json;
    writeSampleJson(json, metrics, {}, QString());
    return QJsonDocument::fromJson(QByteArray::fromStdString(json.text())).object();
}

// The figures under their own names (the terminal mode's golden files hold every key in its
// order); a figure that was not read is null, and swap is null with the rest of the memory
// reading when that failed.
TEST(SampleJsonTest, FiguresKeepTheirNamesAndAreNullWhenUnread) {
    constexpr qint64 GiB = 1ll << 30;
    SystemMetrics metrics;
    metrics.cpuUsage = 14;
    metrics.cpuUsageValid = true;
    metrics.cpuCores = {10, 20, 95.5, 0};
    metrics.memoryUsed = 4 * GiB;
    metrics.memoryTotal = 16 * GiB;
    metrics.memoryValid = true;
    metrics.swapUsed = 1 * GiB;
    metrics.swapTotal = 4 * GiB;
    metrics.diskReadBytesPerSecond = 1500;
    metrics.diskWriteBytesPerSecond = 2'500'000;
    metrics.diskDevices = {QStringLiteral("nvme0n1"), QStringLiteral("sda")};
    const QJsonObject read = written(metrics);
    EXPECT_EQ(read["cpuCores"].toArray(), (QJsonArray{10, 20, 95.5, 0}));
    EXPECT_EQ(read["swapUsed"].toInteger(), GiB);
    EXPECT_EQ(read["swapTotal"].toInteger(), 4 * GiB);
    EXPECT_EQ(read["diskReadRate"].toDouble(), 1500);
    EXPECT_EQ(read["diskWriteRate"].toDouble(), 2'500'000);
    EXPECT_EQ(read["diskDevices"].toArray(), (QJsonArray{"nvme0n1", "sda"}));

    metrics.memoryValid = false;
    metrics.cpuUsageValid = false;
    metrics.cpuCores.clear();
    metrics.diskReadBytesPerSecond.reset();
    metrics.diskWriteBytesPerSecond.reset();
    metrics.diskDevices.clear();
    const QJsonObject unread = written(metrics);
    for (const char* key : {"cpuUsage", "memoryUsed", "memoryTotal", "memoryPercentage", "swapUsed",
                            "swapTotal", "diskReadRate", "diskWriteRate"})
        EXPECT_TRUE(unread[key].isNull()) << key;
    EXPECT_EQ(unread["cpuCores"].toArray(), QJsonArray());
    EXPECT_EQ(unread["diskDevices"].toArray(), QJsonArray());
}

} // namespace

#include "cli/StatusLineWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

TopApplications sample(bool cpuValid) {
    TopApplications top;
    top.cpuValid = cpuValid;
    TopApplication firefox{"Firefox", "firefox",  "firefox", {{10, 1}, {11, 2}, {12, 3}},
                           12.5,      900u << 20, true};
    TopApplication spinner{"spin", "", "", {{20, 4}}, 99.0, 1u << 20, true};
    TopApplication cache{"cache", "", "", {{30, 5}}, 0.0, 2000u << 20, true};
    top.groups = {firefox, spinner, cache};
    return top;
}

QJsonObject jsonLine(StatusLineWriter& writer) {
    const SystemMetrics metrics;
    const MetricHistories histories;
    const DiskVolumeList disks;
    const LabelSettings settings;
    const std::string line = writer.line({metrics, histories, disks, settings});
    return QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
}

TEST(TopApplicationsJsonTest, JsonLinesListTheTopByCpuOrByMemoryBeforeTheFirstInterval) {
    for (const bool cpuValid : {true, false}) {
        const TopApplications top = sample(cpuValid);
        StatusLineWriter writer(OutputFormat::json);
        writer.setTopApplications(&top, 2);
        const QJsonArray rows = jsonLine(writer)["topApplications"].toArray();
        ASSERT_EQ(rows.size(), 2) << cpuValid;
        const QJsonObject first = rows[0].toObject();
        const QJsonObject second = rows[1].toObject();
        if (cpuValid) {
            EXPECT_EQ(first["name"].toString(), "spin");
            EXPECT_EQ(first["cpuPercent"].toDouble(), 99.0);
            EXPECT_TRUE(first["appId"].isNull()) << "a lone process has no application";
            EXPECT_EQ(second["name"].toString(), "Firefox");
            EXPECT_EQ(second["appId"].toString(), "firefox");
            EXPECT_EQ(second["processCount"].toInt(), 3);
            EXPECT_EQ(second["residentBytes"].toInteger(), 900ll << 20);
        } else {
            EXPECT_EQ(first["name"].toString(), "cache");
            EXPECT_TRUE(first["cpuPercent"].isNull()) << "no made-up zero";
        }
    }
    StatusLineWriter plain(OutputFormat::json);
    EXPECT_FALSE(jsonLine(plain).contains("topApplications")) << "only with --top";
}

TEST(TopApplicationsJsonTest, WaybarTooltipEndsWithTheTopThree) {
    TopApplications top = sample(true);
    top.groups.append(TopApplication{"fourth", "", "", {{40, 6}}, 50.0, 1, true});
    StatusLineWriter writer(OutputFormat::waybar);
    writer.setTopApplications(&top, 10);
    const QStringList lines = jsonLine(writer)["tooltip"].toString().split('\n');
    ASSERT_GE(lines.size(), 3);
    EXPECT_EQ(lines.mid(lines.size() - 3),
              (QStringList{"spin: 99 % CPU, 1.0 MB", "fourth: 50 % CPU, 1 byte",
                           "Firefox · 3 processes: 13 % CPU, 900.0 MB"}));
}

} // namespace

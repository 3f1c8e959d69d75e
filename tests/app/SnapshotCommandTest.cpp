#include "app/SnapshotCommand.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

QStringList split(const char* arguments) {
    return QString::fromUtf8(arguments).split(u' ', Qt::SkipEmptyParts);
}

TEST(SnapshotCommandTest, ParsesFileStyleAndTheme) {
    const struct {
        const char* arguments;
        const char* file;
        std::optional<MetricCardStyle> style;
        std::optional<bool> dark;
    } cases[] = {
        {"--snapshot a.png", "a.png", std::nullopt, std::nullopt},
        {"--snapshot a.png --style ring", "a.png", MetricCardStyle::ring, std::nullopt},
        {"--theme dark --snapshot=b.png --style=sparklineArea", "b.png",
         MetricCardStyle::sparklineArea, true},
        {"--snapshot c.png --theme light --style compactRow", "c.png", MetricCardStyle::compactRow,
         false},
    };
    for (const auto& c : cases) {
        const SnapshotParse parsed = SnapshotCommand::parse(split(c.arguments));
        ASSERT_TRUE(parsed.options) << c.arguments << ": " << parsed.error.toStdString();
        EXPECT_EQ(parsed.options->file, QLatin1String(c.file)) << c.arguments;
        EXPECT_EQ(parsed.options->style, c.style) << c.arguments;
        EXPECT_EQ(parsed.options->dark, c.dark) << c.arguments;
    }
}

TEST(SnapshotCommandTest, RejectsWhatItCannotDraw) {
    const std::pair<const char*, const char*> cases[] = {
        {"--snapshot", "needs a file name"},
        {"--snapshot --style ring", "needs a file name"},
        {"--snapshot a.png --style Classic", "unknown style 'Classic'"},
        {"--snapshot a.png --theme blue", "unknown theme 'blue'"},
        {"--snapshot a.png --watch", "'--watch' cannot be combined"},
        // With --label the style is the label's.
        {"--snapshot a.png --label --style grid", "unknown label style 'grid'"},
    };
    for (const auto& [arguments, message] : cases) {
        const SnapshotParse parsed = SnapshotCommand::parse(split(arguments));
        EXPECT_FALSE(parsed.options) << arguments;
        EXPECT_TRUE(parsed.error.contains(QLatin1String(message)))
            << arguments << ": " << parsed.error.toStdString();
    }
    EXPECT_TRUE(SnapshotCommand::requested(split("--style ring --snapshot=x.png")));
    const SnapshotParse label =
        SnapshotCommand::parse(split("--style miniBar --label --snapshot l.png"));
    ASSERT_TRUE(label.options) << label.error.toStdString();
    EXPECT_TRUE(label.options->label);
    EXPECT_EQ(label.options->labelStyle, MenuBarDisplayStyle::miniBar);
    EXPECT_FALSE(label.options->style);
    EXPECT_FALSE(SnapshotCommand::requested(split("--print --format json")));
}

// The real binary, with no display at all, at scale factors 1 and 2.
TEST(SnapshotCommandTest, WritesThePictureWithoutADisplay) {
    QTemporaryDir dir;
    for (const int scale : {1, 2}) {
        const QString file = dir.filePath(QStringLiteral("dashboard-%1.png").arg(scale));
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(scale));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.path());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(LUMETRA_BINARY),
                      {QStringLiteral("--snapshot"), file, QStringLiteral("--style"),
                       QStringLiteral("grid"), QStringLiteral("--theme"), QStringLiteral("dark")});
        ASSERT_TRUE(process.waitForFinished(30'000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        const QImage image(file);
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.width(), 280 * scale);
        EXPECT_GT(image.height(), 300 * scale);
    }
}

} // namespace

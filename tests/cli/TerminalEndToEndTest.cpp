#include "support/FixtureTree.h"

#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Runs the built lumetra against saved machine trees and compares its output with golden
// files under tests/fixtures/golden/. To regenerate them after an intended change:
//   LUMETRA_UPDATE_GOLDEN=1 ctest --test-dir build -R TerminalEndToEnd
// The timestamp and the disks' capacities (statvfs of the checkout's own file system) differ
// from run to run and machine to machine; they are masked before comparing.

using lumetra::testing::fixtureRoot;

namespace {

const char* const kAllMetricsSettings = R"({
    "enabledMetrics": ["cpu", "memory", "temperature", "download", "upload"],
    "metricOrder": ["cpu", "memory", "temperature", "download", "upload"],
    "updateInterval": 0.5,
    "temperatureInterval": 1.0
})";

const char* const kCompactGraphSettings = R"({
    "enabledMetrics": ["cpu", "memory", "temperature", "download"],
    "metricOrder": ["temperature", "cpu", "memory", "download"],
    "menuBarDisplayStyle": "miniBar",
    "memoryFormat": "both",
    "temperatureFormat": "labeledCPU",
    "separator": "bullet",
    "updateInterval": 0.5
})";

struct RunResult {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

RunResult runLumetra(const QStringList& arguments, const char* settingsJson = nullptr) {
    QTemporaryDir config;
    if (settingsJson) {
        QDir().mkpath(config.path() + "/lumetra");
        QFile file(config.path() + "/lumetra/settings.json");
        file.open(QIODevice::WriteOnly);
        file.write(settingsJson);
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", config.path());
    environment.insert("LC_ALL", "C.UTF-8");
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    process.setProcessEnvironment(environment);
    process.start(LUMETRA_BINARY, arguments);
    process.closeWriteChannel();
    RunResult result;
    if (!process.waitForFinished(20'000)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

QByteArray masked(QByteArray output) {
    QString text = QString::fromUtf8(output);
    text.replace(QRegularExpression(R"("timestamp":"[^"]*")"), R"("timestamp":"<time>")");
    text.replace(QRegularExpression(R"("(total|available)Capacity":\d+)"),
                 R"("\1Capacity":"<bytes>")");
    text.replace(QRegularExpression(R"((Disk [^:\\]*): [^\\"]* free of [^\\"]*)"),
                 R"(\1: <free> free of <total>)");
    return text.toUtf8();
}

struct GoldenCase {
    const char* machine;
    const char* format;
    const char* settings;
    const char* settingsName;
};

std::string caseName(const GoldenCase& c) {
    std::string name = std::string(c.machine) + "_" + c.format + "_" + c.settingsName;
    std::erase(name, '-');
    return name;
}

class TerminalEndToEndTest : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(TerminalEndToEndTest, PrintMatchesTheGoldenFile) {
    const GoldenCase& c = GetParam();
    const RunResult run = runLumetra(
        {"--print", "--format", c.format, "--root", QString::fromStdString(fixtureRoot(c.machine))},
        c.settings);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QByteArray output = masked(run.out);

    if (QByteArray(c.format) != "text") {
        // Every line of the machine formats is JSON (the i3bar header, then array lines).
        for (QByteArray line : output.split('\n')) {
            if (line.isEmpty() || line == "[")
                continue;
            if (line.startsWith(','))
                line.remove(0, 1);
            QJsonParseError error;
            QJsonDocument::fromJson(line, &error);
            EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
        }
    }

    const QString goldenPath = QStringLiteral(LUMETRA_FIXTURES_DIR "/golden/%1/%2.%3")
                                   .arg(c.machine, c.settingsName, c.format);
    if (qEnvironmentVariableIsSet("LUMETRA_UPDATE_GOLDEN")) {
        QDir().mkpath(QFileInfo(goldenPath).path());
        QFile file(goldenPath);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(output);
        return;
    }
    QFile golden(goldenPath);
    ASSERT_TRUE(golden.open(QIODevice::ReadOnly)) << goldenPath.toStdString();
    EXPECT_EQ(output.toStdString(), golden.readAll().toStdString());
}

std::vector<GoldenCase> goldenCases() {
    std::vector<GoldenCase> cases;
    for (const char* machine : {"desktop-intel", "raspberry-pi", "container-lxcfs"}) {
        for (const char* format : {"text", "json", "waybar", "i3bar"})
            cases.push_back({machine, format, kAllMetricsSettings, "all-metrics"});
        cases.push_back({machine, "text", kCompactGraphSettings, "mini-bar"});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Machines, TerminalEndToEndTest, ::testing::ValuesIn(goldenCases()),
                         [](const auto& info) { return caseName(info.param); });

struct UsageCase {
    const char* name;
    QStringList arguments;
    int exitCode;
    const char* outputPart;
};

class TerminalUsageTest : public ::testing::TestWithParam<UsageCase> {};

TEST_P(TerminalUsageTest, AnswersOnTheRightStreamWithTheRightCode) {
    const RunResult run = runLumetra(GetParam().arguments);
    EXPECT_EQ(run.exitCode, GetParam().exitCode);
    const QByteArray& stream = GetParam().exitCode == 0 ? run.out : run.err;
    EXPECT_TRUE(stream.contains(GetParam().outputPart)) << stream.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Options, TerminalUsageTest,
    ::testing::Values(
        UsageCase{"Help", {"--help"}, 0, "Usage: lumetra"},
        UsageCase{"Version", {"--version"}, 0, "lumetra " LUMETRA_VERSION},
        UsageCase{"Unknown", {"--frobnicate"}, 2, "unknown option '--frobnicate'"},
        UsageCase{"BadFormat", {"--print", "--format", "csv"}, 2, "unknown format"},
        UsageCase{"MissingRoot", {"--print", "--root", "/no/such/dir"}, 2, "not a directory"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TerminalModeTest, WithoutADisplayPlainLumetraWatchesAndSaysSoOnce) {
    QTemporaryDir config;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", config.path());
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    process.setProcessEnvironment(environment);
    process.start(LUMETRA_BINARY, QStringList());
    // Two lines at the default one-second interval, then stop it.
    QByteArray out;
    for (int i = 0; i < 100 && out.count('\n') < 2; ++i) {
        process.waitForReadyRead(200);
        out += process.readAllStandardOutput();
    }
    process.terminate();
    process.waitForFinished(5000);
    EXPECT_GE(out.count('\n'), 2);
    const QByteArray err = process.readAllStandardError();
    EXPECT_EQ(err.count("running lumetra --watch"), 1) << err.toStdString();
}

TEST(TerminalModeTest, EmptyRootStillAnswersWithSaneValues) {
    QTemporaryDir empty;
    const RunResult run =
        runLumetra({"--print", "--format", "json", "--root", empty.path()}, kAllMetricsSettings);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonDocument document = QJsonDocument::fromJson(run.out.trimmed());
    ASSERT_TRUE(document.isObject()) << run.out.toStdString();
    EXPECT_EQ(document["memoryTotal"].toInteger(), 0);
    EXPECT_TRUE(document["temperature"].isNull());
    EXPECT_EQ(document["label"].toString(), QStringLiteral("CPU 0%  RAM 0%  ↓ 0 B/s  ↑ 0 B/s"));
}

} // namespace

#include "support/FixtureTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

// Runs the built lumetra against saved machine trees with the settings in
// tests/fixtures/settings/ and compares its output with golden files under
// tests/fixtures/golden/. To regenerate them after an intended change:
//   LUMETRA_UPDATE_GOLDEN=1 ctest --test-dir build -R TerminalEndToEnd
// The timestamp and the disks' capacities (statvfs of the checkout's own file system) differ
// from run to run and machine to machine; they are masked before comparing.

using lumetra::testing::fixtureRoot;

namespace {

// A process without a display, its configuration in `config` holding the named settings file.
void prepare(QProcess& process, const QTemporaryDir& config, const QString& settings = {}) {
    if (!settings.isEmpty()) {
        QDir().mkpath(config.path() + "/lumetra");
        QFile::copy(LUMETRA_FIXTURES_DIR "/settings/" + settings + ".json",
                    config.path() + "/lumetra/settings.json");
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", config.path());
    environment.insert("LC_ALL", "C.UTF-8");
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    process.setProcessEnvironment(environment);
}

struct RunResult {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

RunResult runLumetra(const QStringList& arguments, const QString& settings = {}) {
    QTemporaryDir config;
    QProcess process;
    prepare(process, config, settings);
    process.start(LUMETRA_BINARY, arguments);
    process.closeWriteChannel();
    if (!process.waitForFinished(20'000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
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
    std::string name;
    QString machine;
    QString format;
    QString settings;
};

class TerminalEndToEndTest : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(TerminalEndToEndTest, PrintMatchesTheGoldenFile) {
    const GoldenCase& c = GetParam();
    const RunResult run = runLumetra({"--print", "--format", c.format, "--root",
                                      QString::fromStdString(fixtureRoot(c.machine.toStdString()))},
                                     c.settings);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QByteArray output = masked(run.out);

    if (c.format != "text") {
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

    QFile golden(QStringLiteral(LUMETRA_FIXTURES_DIR "/golden/%1/%2.%3")
                     .arg(c.machine, c.settings, c.format));
    if (qEnvironmentVariableIsSet("LUMETRA_UPDATE_GOLDEN")) {
        QDir().mkpath(QFileInfo(golden).path());
        ASSERT_TRUE(golden.open(QIODevice::WriteOnly));
        golden.write(output);
        return;
    }
    ASSERT_TRUE(golden.open(QIODevice::ReadOnly)) << golden.fileName().toStdString();
    EXPECT_EQ(output.toStdString(), golden.readAll().toStdString());
}

std::vector<GoldenCase> goldenCases() {
    std::vector<GoldenCase> cases;
    for (const QString machine : {"desktop-intel", "raspberry-pi", "container-lxcfs"}) {
        for (const QString format : {"text", "json", "waybar", "i3bar"})
            cases.push_back({"", machine, format, "all-metrics"});
        cases.push_back({"", machine, "text", "mini-bar"});
    }
    for (GoldenCase& c : cases)
        c.name = QString(c.machine + '_' + c.format + '_' + c.settings).remove('-').toStdString();
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Machines, TerminalEndToEndTest, ::testing::ValuesIn(goldenCases()),
                         [](const auto& info) { return info.param.name; });

// Answers go to stdout with code 0, option errors (the texts: TerminalOptionsTest) to stderr
// with code 2.
TEST(TerminalModeTest, OptionsAnswerOnTheRightStreamWithTheRightCode) {
    for (const auto& [arguments, exitCode, part] :
         std::initializer_list<std::tuple<QStringList, int, const char*>>{
             {{"--help"}, 0, "Usage: lumetra"},
             {{"--version"}, 0, "lumetra " LUMETRA_VERSION},
             {{"--frobnicate"}, 2, "unknown option '--frobnicate'"}}) {
        const RunResult run = runLumetra(arguments);
        EXPECT_EQ(run.exitCode, exitCode) << part;
        EXPECT_TRUE((exitCode == 0 ? run.out : run.err).contains(part)) << part;
    }
}

TEST(TerminalModeTest, WithoutADisplayPlainLumetraWatchesAndSaysSoOnce) {
    QTemporaryDir config;
    QProcess process;
    prepare(process, config);
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

// A tree lumetra cannot read (which file: TerminalOptionsTest) is refused before anything is
// sampled: the message and the hint on stderr, no log lines, nothing on stdout.
TEST(TerminalModeTest, RootWithoutKernelFilesIsRefused) {
    QTemporaryDir empty;
    const RunResult run = runLumetra({"--print", "--format", "json", "--root", empty.path()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
    EXPECT_TRUE(run.err.contains(empty.path().toUtf8() + "/proc/stat: No such file or directory"))
        << run.err.toStdString();
    EXPECT_EQ(run.err.count('\n'), 2) << run.err.toStdString();
}

// Files that are there but say nothing usable give null figures, not zeros, and no refusal.
// (Which figures a failed reading leaves null: SampleJsonTest.)
TEST(TerminalModeTest, FiguresThatCannotBeReadAreNull) {
    lumetra::testing::ScratchTree tree;
    tree.write("proc/stat", "garbage\n");
    tree.write("proc/meminfo", "garbage\n");
    const RunResult run =
        runLumetra({"--print", "--format", "json", "--root", QString::fromStdString(tree.root())},
                   "all-metrics");
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonDocument document = QJsonDocument::fromJson(run.out.trimmed());
    ASSERT_TRUE(document.isObject()) << run.out.toStdString();
    for (const char* field : {"cpuUsage", "memoryUsed", "memoryTotal", "memoryPercentage"})
        EXPECT_TRUE(document[field].isNull()) << field << run.out.toStdString();
}

// Busy share of all CPU time between two readings of /proc/stat, in percent.
struct StatTicks {
    double busy = 0;
    double total = 0;
};
StatTicks readStat() {
    QFile file("/proc/stat");
    file.open(QIODevice::ReadOnly);
    const QList<QByteArray> fields = file.readLine().simplified().split(' ');
    StatTicks ticks;
    for (qsizetype i = 1; i < fields.size() && i <= 8; ++i) {
        const double value = fields[i].toDouble();
        ticks.total += value;
        if (i != 4 && i != 5) // idle and iowait
            ticks.busy += value;
    }
    return ticks;
}

// With a process spinning, the very first line carries a measured figure: no baseline 0.
TEST(TerminalModeTest, FirstWatchLineUnderLoadShowsTheMeasuredCPU) {
    QProcess spinner;
    spinner.start("sh", {"-c", "while :; do :; done"});
    ASSERT_TRUE(spinner.waitForStarted());
    QTest::qWait(200);

    QTemporaryDir config;
    QProcess process;
    prepare(process, config, "all-metrics");
    const StatTicks before = readStat();
    process.start(LUMETRA_BINARY, {"--watch", "--format", "json"});
    QByteArray out;
    for (int i = 0; i < 100 && !out.contains('\n'); ++i) {
        process.waitForReadyRead(100);
        out += process.readAllStandardOutput();
    }
    const StatTicks after = readStat();
    process.terminate();
    process.waitForFinished(5000);
    spinner.kill();
    spinner.waitForFinished();

    const QJsonDocument first = QJsonDocument::fromJson(out.left(out.indexOf('\n')));
    ASSERT_TRUE(first.isObject()) << out.toStdString();
    const double expected = (after.busy - before.busy) / (after.total - before.total) * 100;
    // The spinner alone keeps one core busy; lumetra's window is within the one measured here.
    EXPECT_GT(first["cpuUsage"].toDouble(), 0);
    EXPECT_NEAR(first["cpuUsage"].toDouble(), expected, 25) << out.toStdString();
    EXPECT_GE(first["cpuUsage"].toDouble(), 100.0 / QThread::idealThreadCount() / 2);
}

// --top over the live machine: the test itself and lumetra are among what runs.
TEST(TerminalModeTest, TopAddsTheLeadingApplicationsToJsonLines) {
    const RunResult run = runLumetra({"--print", "--format", "json", "--top", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonArray rows = QJsonDocument::fromJson(run.out).object()["topApplications"].toArray();
    ASSERT_EQ(rows.size(), 2) << run.out.toStdString();
    for (const QJsonValue& row : rows) {
        const QJsonObject group = row.toObject();
        EXPECT_FALSE(group["name"].toString().isEmpty());
        EXPECT_GE(group["processCount"].toInt(), 1);
        EXPECT_TRUE(group["cpuPercent"].isDouble()) << "measured over the first interval";
        EXPECT_GT(group["residentBytes"].toDouble(), 0);
    }
    EXPECT_GE(rows[0]["cpuPercent"].toDouble(), rows[1]["cpuPercent"].toDouble());
}

} // namespace

// The dashboard in each card style and theme, rendered from fixed samples and compared with
// the reference images in tests/dashboard/golden/. After an intended change of the look,
// regenerate them (and look at every one before committing it) with:
//   LUMETRA_UPDATE_GOLDEN=1 build/tests/lumetra_tests --gtest_filter='*Dashboard*Golden*'

#include "core/SystemMonitor.h"
#include "core/TopApplicationsMonitor.h"
#include "dashboard/DashboardIcons.h"
#include "dashboard/DashboardPicture.h"
#include "dashboard/DashboardView.h"
#include "dashboard/TopApplicationsSection.h"
#include "samplers/process/ProcessTable.h"
#include "settings/SettingsTestSupport.h"
#include "support/Cases.h"
#include "support/FixtureTree.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <gtest/gtest.h>

#include <cstdlib>

namespace lumetra {
namespace {

using lumetra::testing::history;

constexpr std::uint64_t kGiB = 1ull << 30;

DiskVolume volume(const char* name, std::int64_t total, std::int64_t available, bool internal) {
    DiskVolume disk;
    disk.id = QStringLiteral("/mnt/") + QLatin1String(name);
    disk.name = QLatin1String(name);
    disk.totalCapacity = total;
    disk.availableCapacity = available;
    disk.isInternal = internal;
    return disk;
}

// A machine at work: CPU exactly 75 % (orange), memory 90 % (red), 52 °C (accent), a
// half-full disk, one whose free space exceeds its size, one nearly full, traffic, eight
// cores at every level, swap in use and the disks busy.
DashboardState busyMachine() {
    DashboardState state;
    state.metrics.cpuUsage = 75;
    state.metrics.memoryUsed = 29 * kGiB - 800 * (1ull << 20);
    state.metrics.memoryTotal = 32 * kGiB;
    state.metrics.memoryPercentage = 90;
    state.metrics.temperature = 52.4;
    state.metrics.temperatureAvailability = TemperatureAvailability::exactTemperature;
    state.metrics.downloadBytesPerSecond = 1'234'567;
    state.metrics.uploadBytesPerSecond = 98'765;
    state.metrics.temperatureSources = {QStringLiteral("k10temp/Tccd1"),
                                        QStringLiteral("k10temp/Tccd2")};
    state.metrics.networkInterfaces = {QStringLiteral("enp5s0"), QStringLiteral("wlp3s0")};
    // Eight cores from idle to flat out, so the row shows every level colour.
    state.metrics.cpuCores = {100, 92, 80, 76, 60, 45, 12, 0};
    state.metrics.swapUsed = 3 * kGiB;
    state.metrics.swapTotal = 8 * kGiB;
    state.metrics.diskReadBytesPerSecond = 52'400'000;
    state.metrics.diskWriteBytesPerSecond = 1'500;
    state.metrics.diskDevices = {QStringLiteral("nvme0n1")};
    state.histories.cpu = history({12, 30, 22, 48, 95, 60, 40, 70, 75});
    state.histories.memory = history({80, 82, 85, 86, 88, 89, 90, 90, 90});
    state.diskVolumes = {volume("System", 500'000'000'000, 250'000'000'000, true),
                         volume("Backup", 1'000'000'000, 4'000'000'000, false),
                         volume("USB Stick", 64'000'000'000, 1'000'000'000, false)};
    return state;
}

// An idle machine: CPU 0 % on four cores, memory 100 %, no swap, no temperature (thermal
// state only), no volumes, no disk rates and no history yet.
DashboardState idleMachine() {
    DashboardState state;
    state.metrics.cpuUsage = 0;
    state.metrics.memoryUsed = 16 * kGiB;
    state.metrics.memoryTotal = 16 * kGiB;
    state.metrics.memoryPercentage = 100;
    state.metrics.thermalState = ThermalState::serious;
    state.metrics.temperatureAvailability = TemperatureAvailability::unavailable;
    state.metrics.cpuCores = {0, 0, 0, 0};
    state.metrics.swapUsed = 0;
    state.metrics.swapTotal = 0;
    state.histories.cpu = history({0});
    state.histories.memory = history({100});
    return state;
}

// The dashboard with its Top section as an open popover shows it (the README's pictures are
// copies of these): applications with several processes, a long name cut, every figure
// right-aligned in its column.
TopApplications topOfADesktop() {
    auto group = [](const char* name, const char* appId, int processes, double cpu,
                    std::uint64_t resident) {
        TopApplication app;
        app.name = QLatin1String(name);
        app.appId = QLatin1String(appId);
        for (int i = 0; i < processes; ++i)
            app.processes.append({1000 + i, 1});
        app.cpuPercent = cpu;
        app.residentBytes = resident;
        app.ownedByUser = true;
        return app;
    };
    TopApplications top;
    top.cpuValid = true;
    top.groups = {group("Firefox", "firefox", 3, 38.2, 1'900'000'000),
                  group("gnome-shell", "", 1, 12.4, 310'000'000),
                  group("Text Editor", "org.gnome.TextEditor", 1, 6.1, 120'000'000),
                  group("Terminal", "org.gnome.Terminal", 2, 3.0, 80'000'000),
                  group("gnome-shell-calendar-server", "", 1, 1.2, 30'000'000)};
    return top;
}

// A card style, whether the theme is dark, and whether the busy machine's Top section shows.
struct GoldenCase {
    MetricCardStyle style;
    bool dark;
    bool top;
};

std::string caseName(const GoldenCase& golden) {
    return std::string(golden.top ? "top_" : "") + std::string(rawValue(golden.style)) +
           (golden.dark ? "_dark" : "_light");
}

// Every style in both themes, the idle machine in the dark, and two with the Top section.
std::vector<GoldenCase> goldenCases() {
    std::vector<GoldenCase> cases;
    for (const MetricCardStyle style : allCases<MetricCardStyle>())
        for (const bool dark : {false, true})
            cases.push_back({style, dark, false});
    cases.push_back({MetricCardStyle::classic, false, true});
    cases.push_back({MetricCardStyle::compactRow, true, true});
    return cases;
}

// A pixel counts as different when a channel is off by more than this: font rasterisers
// differ a little between FreeType releases.
constexpr int kChannelTolerance = 24;
constexpr double kDifferentShare = 0.003;

int channelDistance(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}

// Compares a picture with its reference image, or writes it under LUMETRA_UPDATE_GOLDEN.
void expectMatchesGolden(const QImage& picture, const QString& path) {
    const QImage actual = picture.convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(actual.width(), DashboardView::kWidth);
    if (qEnvironmentVariableIsSet("LUMETRA_UPDATE_GOLDEN")) {
        QDir().mkpath(QFileInfo(path).path());
        ASSERT_TRUE(actual.save(path));
        GTEST_SKIP() << "wrote " << path.toStdString();
    }
    const QImage expected = QImage(path).convertToFormat(QImage::Format_ARGB32);
    ASSERT_FALSE(expected.isNull()) << "no reference image " << path.toStdString();
    const QString actualPath = QDir::temp().filePath(QFileInfo(path).fileName());
    ASSERT_EQ(actual.size(), expected.size())
        << "the layout changed; this run's image: " << (actual.save(actualPath), "")
        << actualPath.toStdString();
    qint64 different = 0;
    for (int y = 0; y < actual.height(); ++y) {
        const auto* a = reinterpret_cast<const QRgb*>(actual.constScanLine(y));
        const auto* b = reinterpret_cast<const QRgb*>(expected.constScanLine(y));
        for (int x = 0; x < actual.width(); ++x)
            different += channelDistance(a[x], b[x]) > kChannelTolerance;
    }
    const double share = double(different) / (double(actual.width()) * actual.height());
    if (share > kDifferentShare)
        actual.save(actualPath);
    EXPECT_LE(share, kDifferentShare)
        << different << " pixels differ; this run's image: " << actualPath.toStdString();
}

class DashboardGolden : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(DashboardGolden, MatchesReferenceImage) {
    const GoldenCase golden = GetParam();
    DashboardIcons::setThemeIconsEnabled(false);
    testing::LoadedStore settings;
    settings.store.setMetricCardStyle(golden.style);
    SystemMonitor monitor({}, 1, 1);
    QThread thread;
    std::unique_ptr<TopApplicationsMonitor> top;
    if (golden.top) {
        thread.start();
        const std::string tree = lumetra::testing::fixtureRoot("processes/gnome");
        top = std::make_unique<TopApplicationsMonitor>(
            std::make_shared<ProcessTable>(KernelRoots(tree),
                                           DesktopEntries({tree + "/usr/share"})),
            &thread, 60);
    }
    {
        DashboardView view(monitor, settings.store, nullptr, top.get());
        view.setFixedLook(QStringLiteral("DejaVu Sans"));
        view.setDark(golden.dark);
        view.setFixedState(golden.dark && !golden.top ? idleMachine() : busyMachine());
        if (top)
            view.topApplicationsSection()->setFixedTopApplications(topOfADesktop());
        expectMatchesGolden(DashboardPicture::render(view, AppearanceConfiguration(), 1.0),
                            QStringLiteral(LUMETRA_FIXTURES_DIR "/../dashboard/golden/%1.png")
                                .arg(QString::fromStdString(caseName(golden))));
    }
    top.reset();
    thread.quit();
    thread.wait();
}

INSTANTIATE_TEST_SUITE_P(StylesAndThemes, DashboardGolden, ::testing::ValuesIn(goldenCases()),
                         [](const auto& info) { return caseName(info.param); });

} // namespace
} // namespace lumetra

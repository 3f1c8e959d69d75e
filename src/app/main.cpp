#include "cli/TerminalMode.h"
#include "cli/TerminalOptions.h"
#include "core/SystemMonitor.h"
#include "model/AppId.h"
#include "samplers/AppleSiliconTemperatureProvider.h"
#include "samplers/CPUMonitor.h"
#include "samplers/DiskMonitor.h"
#include "samplers/MemoryMonitor.h"
#include "samplers/MountWatcher.h"
#include "samplers/NetworkMonitor.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

using namespace lumetra;

namespace {

bool hasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// The text and i3bar lines show no disks: listing them every slow tick would be work for
// nothing on a status bar that runs for days.
class NoDiskVolumes final : public DiskProviding {
public:
    DiskVolumeList currentVolumes() override { return {}; }
};

std::shared_ptr<DiskProviding> diskProvider(OutputFormat format, const KernelRoots& roots) {
    if (format == OutputFormat::json || format == OutputFormat::waybar)
        return std::make_shared<DiskMonitor>(roots);
    return std::make_shared<NoDiskVolumes>();
}

void printTo(std::FILE* stream, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<std::size_t>(utf8.size()), stream);
    std::fflush(stream);
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumetra"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(kAppVersion));
    if (qEnvironmentVariableIsEmpty("QT_MESSAGE_PATTERN"))
        qSetMessagePattern(
            QStringLiteral("lumetra: %{if-category}%{category}: %{endif}%{message}"));

    const TerminalOptionsParse parsed = parseTerminalOptions(app.arguments().mid(1));
    if (!parsed.options) {
        printTo(stderr, parsed.error + u'\n');
        return 2;
    }
    TerminalOptions options = *parsed.options;
    switch (options.action) {
    case TerminalOptions::Action::help:
        printTo(stdout, terminalUsage());
        return 0;
    case TerminalOptions::Action::version:
        printTo(stdout, QStringLiteral("lumetra %1\n").arg(QCoreApplication::applicationVersion()));
        return 0;
    case TerminalOptions::Action::runPanel:
        // The panel item is the desktop app's; until it runs here, the terminal mode stands in.
        printTo(stderr, hasDisplay()
                            ? QStringLiteral("lumetra: the panel item is not part of this build; "
                                             "running lumetra --watch\n")
                            : QStringLiteral("lumetra: no display (neither DISPLAY nor "
                                             "WAYLAND_DISPLAY is set); running lumetra --watch\n"));
        options.action = TerminalOptions::Action::watch;
        break;
    case TerminalOptions::Action::print:
    case TerminalOptions::Action::watch:
        break;
    }

    const KernelRoots roots(options.root.toStdString());
    // The terminal mode only reads the settings: the panel app owns the file.
    UserDefaults defaults(UserDefaults::standardFilePath(), UserDefaults::Access::readOnly);
    SettingsStore settings(defaults);
    SystemMonitor monitor(
        {std::make_shared<CPUMonitor>(roots), std::make_shared<MemoryMonitor>(roots),
         std::make_shared<NetworkMonitor>(roots),
         std::make_shared<AppleSiliconTemperatureProvider>(roots),
         diskProvider(options.format, roots)},
        seconds(settings.updateInterval()), seconds(settings.temperatureInterval()));
    // Formats that show disks re-list them as soon as a file system comes or goes; a single
    // --print line has nothing to re-list.
    std::unique_ptr<MountWatcher> mountWatcher;
    const bool showsDisks =
        options.format == OutputFormat::json || options.format == OutputFormat::waybar;
    if (showsDisks && options.action == TerminalOptions::Action::watch) {
        mountWatcher = std::make_unique<MountWatcher>(roots);
        QObject::connect(mountWatcher.get(), &MountWatcher::mountsChanged, &monitor,
                         &SystemMonitor::refreshDiskVolumes);
    }
    TerminalMode mode(options, settings, monitor, stdout);
    QObject::connect(&mode, &TerminalMode::finished, &app, &QCoreApplication::exit);
    QTimer::singleShot(0, &mode, [&mode] { mode.start(); });
    return app.exec();
}

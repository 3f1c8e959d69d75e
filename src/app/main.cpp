#include "app/LumetraApp.h"
#include "app/SnapshotCommand.h"
#include "app/Translations.h"
#include "cli/TerminalMode.h"
#include "cli/TerminalOptions.h"
#include "core/LiveProviders.h"
#include "core/SystemMonitor.h"
#include "core/TopApplicationsMonitor.h"
#include "desktop/SingleInstance.h"
#include "model/AppId.h"
#include "model/Logging.h"
#include "samplers/disk/MountWatcher.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QApplication>
#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

using namespace lumetra;

namespace {

bool hasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// The text and i3bar lines show no disks: listing them every slow tick would be work for
// nothing on a status bar that runs for days, so those formats sample none.
bool formatShowsDisks(OutputFormat format) {
    return format == OutputFormat::json || format == OutputFormat::waybar;
}

void printTo(std::FILE* stream, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<std::size_t>(utf8.size()), stream);
    std::fflush(stream);
}

int runTerminal(int argc, char* argv[], TerminalOptions options) {
    // Qt's own event loop wakes for a timer or a posted event with a fraction of the work
    // GLib's does, and a status bar runs this loop every second for days.
    if (!qEnvironmentVariableIsSet("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumetra"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(kAppVersion));

    const KernelRoots roots(options.root.toStdString());
    // The terminal mode only reads the settings: the panel app owns the file.
    UserDefaults defaults(UserDefaults::standardFilePath(), UserDefaults::Access::readOnly);
    SettingsStore settings(defaults);
    SystemMonitor::Providers providers = liveProviders(roots, settings);
    if (!formatShowsDisks(options.format))
        providers.disk = nullptr;
    // Nothing else runs on this thread: the ticks sample on it, without a hop to another.
    SystemMonitor monitor(std::move(providers), seconds(settings.updateInterval()),
                          seconds(settings.temperatureInterval()), nullptr, SamplingThread::caller);
    // Formats that show disks re-list them as soon as a file system comes or goes; a single
    // --print line has nothing to re-list.
    std::unique_ptr<MountWatcher> mountWatcher;
    if (formatShowsDisks(options.format) && options.action == TerminalOptions::Action::watch) {
        mountWatcher = std::make_unique<MountWatcher>(roots);
        QObject::connect(mountWatcher.get(), &MountWatcher::mountsChanged, &monitor,
                         &SystemMonitor::refreshDiskVolumes);
    }
    // --top: processes are read on the monitoring thread, and only with this option.
    std::unique_ptr<TopApplicationsMonitor> top;
    if (options.top > 0)
        top = std::make_unique<TopApplicationsMonitor>(
            liveProcessTable(roots), monitor.monitoringThread(), seconds(settings.updateInterval()),
            options.top);
    TerminalMode mode(options, settings, monitor, stdout);
    mode.setTopApplications(top.get());
    QObject::connect(&mode, &TerminalMode::finished, &app, &QCoreApplication::exit);
    QTimer::singleShot(0, &mode, [&mode] { mode.start(); });
    return app.exec();
}

int runPanel(int argc, char* argv[], const TerminalOptions& options) {
    // A Wayland client cannot place its own windows; the popover must stand by the panel
    // item, so go through XWayland where there is one.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumetra"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(kAppVersion));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(kAppId));
    // The app lives in the panel: closing its last window does not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    installTranslations(app);

    SingleInstance instance;
    const QString request =
        options.showSettings ? QStringLiteral("settings") : QStringLiteral("popover");
    switch (instance.claimOrForward(request)) {
    case SingleInstance::Outcome::forwarded:
        return 0;
    case SingleInstance::Outcome::failed:
        printTo(stderr, QStringLiteral("lumetra: another lumetra owns the session bus name %1 "
                                       "but does not answer\n")
                            .arg(SingleInstance::serviceName()));
        return 1;
    case SingleInstance::Outcome::noBus:
        qCWarning(logUi) << "no session bus: a second lumetra cannot find this one";
        break;
    case SingleInstance::Outcome::primary:
        break;
    }

    LumetraApp lumetra({options.showSettings});
    QObject::connect(&instance, &SingleInstance::activationRequested, &lumetra,
                     &LumetraApp::handleRequest);
    return app.exec();
}

QStringList argumentsOf(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

} // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_MESSAGE_PATTERN"))
        qSetMessagePattern(
            QStringLiteral("lumetra: %{if-category}%{category}: %{endif}%{message}"));

    if (const QStringList arguments = argumentsOf(argc, argv);
        SnapshotCommand::requested(arguments)) {
        const SnapshotParse snapshot = SnapshotCommand::parse(arguments);
        if (!snapshot.options) {
            printTo(stderr, snapshot.error + u'\n');
            return 2;
        }
        return SnapshotCommand::run(argc, argv, *snapshot.options);
    }
    const TerminalOptionsParse parsed = parseTerminalOptions(argumentsOf(argc, argv));
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
        printTo(stdout, QStringLiteral("lumetra %1\n").arg(QString::fromLatin1(kAppVersion)));
        return 0;
    case TerminalOptions::Action::runPanel:
        if (hasDisplay())
            return runPanel(argc, argv, options);
        printTo(stderr, QStringLiteral("lumetra: no display (neither DISPLAY nor "
                                       "WAYLAND_DISPLAY is set); running lumetra --watch\n"));
        options.action = TerminalOptions::Action::watch;
        break;
    case TerminalOptions::Action::print:
    case TerminalOptions::Action::watch:
        break;
    }
    return runTerminal(argc, argv, options);
}

#include "app/LumetraApp.h"

#include "appearance/AppearanceManager.h"
#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "desktop/DesktopAccessibility.h"
#include "desktop/XdgAutostartLoginItem.h"
#include "menubar/MenuBarPopoverWindowController.h"
#include "menubar/StatusItemController.h"
#include "model/Logging.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"
#include "updates/MessageBoxUpdateAlerts.h"
#include "updates/UpdateChecker.h"
#include "updates/UpdateService.h"
#include "windows/SettingsView.h"
#include "windows/SupportWindowController.h"
#include "windows/WelcomeView.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace lumetra {

namespace {

constexpr auto kUiTestSettingsDelay = std::chrono::milliseconds(200);

} // namespace

LumetraApp::LumetraApp(Options options, QObject* parent) : QObject(parent) {
    // The desktop's accessibility flags feed the appearance manager from the start.
    accessibility_ = std::make_unique<DesktopAccessibility>();

    defaults_ = std::make_unique<UserDefaults>(UserDefaults::standardFilePath());
    settings_ = std::make_unique<SettingsStore>(*defaults_);
    step(QStringLiteral("settings"));

    appearance_ = std::make_unique<AppearanceManager>(accessibility_->reduceTransparency(),
                                                      accessibility_->increaseContrast());
    connect(accessibility_.get(), &DesktopAccessibility::changed, appearance_.get(), [this] {
        appearance_->setFlags(accessibility_->reduceTransparency(),
                              accessibility_->increaseContrast());
    });
    step(QStringLiteral("appearanceManager"));

    updateChecker_ = std::make_unique<UpdateChecker>();
    updateAlerts_ = std::make_unique<MessageBoxUpdateAlerts>();
    step(QStringLiteral("updateChecker"));

    loginItem_ = std::make_unique<XdgAutostartLoginItem>();
    appState_ = std::make_unique<AppState>(
        AppState::Services{*settings_, *appearance_, *updateChecker_, *updateAlerts_, *loginItem_});
    connect(appState_.get(), &AppState::supportPromptRequested, this, &LumetraApp::showSupport);
    step(QStringLiteral("appState"));

    // Sampling begins once the event loop runs, after the graph is complete.
    QMetaObject::invokeMethod(
        this,
        [this] {
            appState_->systemMonitor().start();
            step(QStringLiteral("startSampling"));
            emit samplingStarted();
        },
        Qt::QueuedConnection);

    appState_->recordLaunch();
    step(QStringLiteral("recordLaunch"));

    appState_->updateService().checkForUpdatesIfNeeded();
    step(QStringLiteral("dailyUpdateCheck"));

    popover_ = std::make_unique<MenuBarPopoverWindowController>(*appState_);
    connectWindows();
    installStatusItem();
    step(QStringLiteral("statusItem"));

    if (AppState::uiTestOpensSettings())
        QTimer::singleShot(kUiTestSettingsDelay, this, &LumetraApp::showSettings);
    else if (options.openSettings)
        QMetaObject::invokeMethod(this, &LumetraApp::showSettings, Qt::QueuedConnection);
    // The first start shows the welcome; finishing it clears showWelcomeScreen, so the
    // General tab's "Show welcome screen on next launch" brings it back when ticked again.
    if (settings_->showWelcomeScreen())
        QMetaObject::invokeMethod(this, &LumetraApp::showWelcome, Qt::QueuedConnection);
}

LumetraApp::~LumetraApp() = default;

void LumetraApp::step(const QString& name) {
    steps_.append(name);
    qCDebug(logUi).noquote() << "start-up:" << name;
}

void LumetraApp::connectWindows() {
    connect(popover_.get(), &MenuBarPopoverWindowController::settingsRequested, this,
            &LumetraApp::showSettings);
    connect(popover_.get(), &MenuBarPopoverWindowController::supportRequested, this,
            &LumetraApp::showSupport);
    connect(popover_.get(), &MenuBarPopoverWindowController::quitRequested, this,
            &LumetraApp::quit);
}

void LumetraApp::installStatusItem() {
    // Parented to the app, which lives for the whole process.
    auto* item = new StatusItemController(appState_->systemMonitor(), appState_->settings(), this);
    connect(item, &StatusItemController::toggleRequested, this, &LumetraApp::togglePopover);
    connect(item, &StatusItemController::showDashboardRequested, this, [this] { showPopover({}); });
    connect(item, &StatusItemController::settingsRequested, this, &LumetraApp::showSettings);
    connect(item, &StatusItemController::quitRequested, this, &LumetraApp::quit);
    // Nothing on a new bus could reach this process, and a later start there must not find a
    // twin running unseen: end it.
    connect(item, &StatusItemController::sessionBusLost, this, [] {
        std::fputs(qPrintable(tr("lumetra: the session bus went away; exiting\n")), stderr);
        QCoreApplication::exit(kSessionBusLostExitCode);
    });
    if (!item->panelAvailable())
        std::fputs(qPrintable(tr("lumetra: no panel here can show lumetra's item (no "
                                 "StatusNotifierWatcher on the session bus and no system "
                                 "tray); run lumetra again to open the dashboard\n")),
                   stderr);
}

void LumetraApp::handleRequest(const QString& what) {
    if (what == QLatin1String("settings"))
        showSettings();
    else if (what == QLatin1String("support"))
        showSupport();
    else if (what == QLatin1String("quit"))
        quit();
    else
        showPopover({});
}

void LumetraApp::showPopover(const QRect& anchor) {
    popover_->show(anchor);
}

void LumetraApp::togglePopover(const QRect& anchor) {
    popover_->toggle(anchor);
}

void LumetraApp::showSettings() {
    if (!settingsWindow_) {
        settingsWindow_ = std::make_unique<SettingsView>(*appState_);
        connect(settingsWindow_.get(), &SettingsView::supportRequested, this,
                &LumetraApp::showSupport);
    }
    settingsWindow_->present();
    emit windowRequested(QStringLiteral("settings"));
}

void LumetraApp::showSupport() {
    if (!supportWindow_)
        supportWindow_ = std::make_unique<SupportWindowController>();
    supportWindow_->show(*appState_);
    emit windowRequested(QStringLiteral("support"));
}

void LumetraApp::showWelcome() {
    if (!welcomeWindow_) {
        // Finishing closes the flow; the window is hidden, not destroyed, while the event
        // that finished it is still being handled.
        welcomeWindow_ = std::make_unique<WelcomeView>(*appState_, [this] {
            appState_->settings().setShowWelcomeScreen(false);
            welcomeWindow_->close();
        });
    }
    welcomeWindow_->present();
    emit windowRequested(QStringLiteral("welcome"));
}

void LumetraApp::quit() {
    QCoreApplication::quit();
}

} // namespace lumetra

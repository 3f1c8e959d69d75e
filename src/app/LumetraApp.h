#pragma once

#include <QObject>
#include <QRect>
#include <QStringList>

#include <memory>

namespace lumetra {

class AppState;
class AppearanceManager;
class DesktopAccessibility;
class LoginItemService;
class MenuBarPopoverWindowController;
class SettingsStore;
class SettingsView;
class SupportWindowController;
class UpdateAlertPresenting;
class UpdateChecker;
class UserDefaults;
class WelcomeView;

// The panel application: builds the object graph in start-up order, starts sampling, and
// owns the windows, routing every request a view makes (show the popover, the settings or
// support window, quit). Lives for the whole process.
class LumetraApp : public QObject {
    Q_OBJECT

public:
    struct Options {
        bool openSettings = false; // started with --settings
    };

    // The process's status when the session bus went away under it.
    static constexpr int kSessionBusLostExitCode = 1;

    explicit LumetraApp(Options options, QObject* parent = nullptr);
    ~LumetraApp() override;

    AppState& appState() const { return *appState_; }
    MenuBarPopoverWindowController& popover() const { return *popover_; }

    // The windows, once shown (made on first request, then reused).
    SettingsView* settingsWindow() const { return settingsWindow_.get(); }
    WelcomeView* welcomeWindow() const { return welcomeWindow_.get(); }
    SupportWindowController* supportWindow() const { return supportWindow_.get(); }

    // What start-up did so far, in order; for tests and debug logging.
    const QStringList& startupSteps() const { return steps_; }

public slots:
    // A request from a view, the panel item or a second start: "popover", "settings",
    // "support", "quit".
    void handleRequest(const QString& what);
    void showPopover(const QRect& anchor);
    void togglePopover(const QRect& anchor);
    void showSettings();
    void showSupport();
    void showWelcome();
    void quit();

signals:
    // Start-up queued sampling and it began.
    void samplingStarted();
    // A window was asked for: "settings", "support" or "welcome".
    void windowRequested(const QString& which);

private:
    void step(const QString& name);
    void installStatusItem();
    void connectWindows();

    QStringList steps_;
    std::unique_ptr<DesktopAccessibility> accessibility_;
    std::unique_ptr<UserDefaults> defaults_;
    std::unique_ptr<SettingsStore> settings_;
    std::unique_ptr<AppearanceManager> appearance_;
    std::unique_ptr<UpdateChecker> updateChecker_;
    std::unique_ptr<UpdateAlertPresenting> updateAlerts_;
    std::unique_ptr<LoginItemService> loginItem_;
    std::unique_ptr<AppState> appState_;
    std::unique_ptr<MenuBarPopoverWindowController> popover_;
    // The windows go before the state they show.
    std::unique_ptr<SettingsView> settingsWindow_;
    std::unique_ptr<WelcomeView> welcomeWindow_;
    std::unique_ptr<SupportWindowController> supportWindow_;
};

} // namespace lumetra

#include "windows/GeneralSettingsView.h"

#include "core/AppState.h"
#include "settings/SettingsStore.h"
#include "updates/UpdateService.h"
#include "windows/ControlBinding.h"
#include "windows/FormGroup.h"
#include "windows/SecondaryLabel.h"
#include "windows/SymbolIcon.h"
#include "windows/ToggleSwitch.h"
#include "windows/WindowTheme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumetra {

namespace {

// A push button with a symbol that follows the text colour of the palette.
class SymbolButton : public QPushButton {
public:
    SymbolButton(const QString& text, const QString& symbol, QWidget* parent)
        : QPushButton(text, parent), symbol_(symbol) {
        restyle();
    }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::PaletteChange)
            restyle();
        QPushButton::changeEvent(event);
    }

private:
    void restyle() {
        setIcon(SymbolIcon::icon(symbol_, palette().color(QPalette::ButtonText), 14));
    }
    QString symbol_;
};

// "Reset Settings…": its text in the destructive red of the current scheme.
class DestructiveButton : public QPushButton {
public:
    DestructiveButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
        restyle();
    }

protected:
    void changeEvent(QEvent* event) override {
        if ((event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) &&
            !restyling_)
            restyle();
        QPushButton::changeEvent(event);
    }

private:
    void restyle() {
        restyling_ = true;
        // Only the text colour is set here; everything else keeps following the window.
        QPalette p;
        p.setColor(QPalette::ButtonText, WindowTheme::destructive(palette()));
        setPalette(p);
        restyling_ = false;
    }
    bool restyling_ = false;
};

QWidget* leftAligned(QWidget* widget, QWidget* parent) {
    auto* holder = new QWidget(parent);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    widget->setParent(holder);
    layout->addWidget(widget);
    layout->addStretch(1);
    return holder;
}

} // namespace

GeneralSettingsView::GeneralSettingsView(AppState& appState, QWidget* parent)
    : GroupedForm(parent) {
    setObjectName(QStringLiteral("GeneralSettingsView"));
    SettingsStore& settings = appState.settings();

    auto* login = new ToggleSwitch;
    login->setObjectName(QStringLiteral("launchAtLogin"));
    addSection()->addRow(tr("Launch lumetra at login"), login);
    // Switching stores the choice first, then brings the autostart entry in line; a failure is
    // only logged and the switch stays where the user put it.
    bindToggle(
        login, [&settings] { return settings.launchAtLogin(); },
        [&appState, &settings](bool on) {
            settings.setLaunchAtLogin(on);
            appState.applyLoginItem(on);
        },
        &settings, &SettingsStore::launchAtLoginChanged);

    auto* welcome = new ToggleSwitch;
    welcome->setObjectName(QStringLiteral("showWelcomeScreen"));
    addSection()->addRow(tr("Show welcome screen on next launch"), welcome);
    bindToggle(
        welcome, [&settings] { return settings.showWelcomeScreen(); },
        [&settings](bool on) { settings.setShowWelcomeScreen(on); }, &settings,
        &SettingsStore::showWelcomeScreenChanged);

    FormGroup* updates = addSection();
    auto* autoCheck = new ToggleSwitch;
    autoCheck->setObjectName(QStringLiteral("automaticallyCheckForUpdates"));
    updates->addRow(tr("Automatically check for updates"), autoCheck);
    bindToggle(
        autoCheck, [&settings] { return settings.automaticallyCheckForUpdates(); },
        [&settings](bool on) { settings.setAutomaticallyCheckForUpdates(on); }, &settings,
        &SettingsStore::automaticallyCheckForUpdatesChanged);
    auto* checkNow = new SymbolButton(tr("Check for Updates…"),
                                      QStringLiteral("arrow.triangle.2.circlepath"), nullptr);
    checkNow->setObjectName(QStringLiteral("checkForUpdates"));
    checkNow->setAutoDefault(false);
    connect(checkNow, &QPushButton::clicked, this,
            [&appState] { appState.updateService().checkForUpdates(true); });
    updates->addWidget(leftAligned(checkNow, this));

    FormGroup* donate = addSection();
    auto* column = new QWidget;
    auto* columnLayout = new QVBoxLayout(column);
    columnLayout->setContentsMargins(0, 0, 0, 0);
    columnLayout->setSpacing(8);
    columnLayout->addWidget(new SecondaryLabel(
        tr("Donations help improve lumetra — they fund development, testing, and debugging "
           "across new Linux and hardware releases."),
        column));
    auto* support = new SymbolButton(tr("Support lumetra…"), QStringLiteral("heart"), column);
    support->setObjectName(QStringLiteral("supportLumetra"));
    support->setAutoDefault(false);
    connect(support, &QPushButton::clicked, this, &GeneralSettingsView::supportRequested);
    columnLayout->addWidget(leftAligned(support, column));
    donate->addWidget(column);

    FormGroup* resetGroup = addSection();
    auto* reset = new DestructiveButton(tr("Reset Settings…"), nullptr);
    reset->setObjectName(QStringLiteral("resetSettings"));
    reset->setAutoDefault(false);
    // No confirmation: the reset happens at once and every control follows the store.
    connect(reset, &QPushButton::clicked, this, [&settings] { settings.resetToDefaults(); });
    resetGroup->addWidget(leftAligned(reset, this));

    finish();
}

} // namespace lumetra

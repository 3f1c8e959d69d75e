#pragma once

#include <QWidget>

class QTabWidget;

namespace lumetra {

class AppState;
class WindowTheme;

// The settings window: five tabs (General, Menu Bar, Appearance, Monitoring, Advanced) at a
// fixed width of 460. It holds no state: every control reads and writes the settings store.
// The window fits its height to the chosen tab.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr int kWidth = 460;

    explicit SettingsView(AppState& appState, QWidget* parent = nullptr);

    QTabWidget& tabs() const { return *tabs_; }
    // The tab's content (the form itself, inside its scroll area).
    QWidget* page(int index) const;

    // Shows the window, or brings it to the front when it is already shown.
    void present();

signals:
    // The General tab's "Support lumetra…".
    void supportRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void fitHeight();
    void refreshTabIcons();

    QTabWidget* tabs_;
    WindowTheme* theme_;
};

} // namespace lumetra

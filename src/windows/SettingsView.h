#pragma once

#include <QWidget>

class QButtonGroup;
class QStackedWidget;
class QToolButton;

namespace lumetra {

class AppState;
class GlassBackground;
class WindowTheme;

// The settings window: a toolbar of five tabs (General, Menu Bar, Appearance, Monitoring, Advanced)
// at a fixed width of 460. It holds no state: every control reads and writes the settings store.
// The window fits its height to the chosen tab.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr int kWidth = 460;

    explicit SettingsView(AppState& appState, QWidget* parent = nullptr);

    int count() const;
    int currentIndex() const;
    void setCurrentIndex(int index);
    QString tabTitle(int index) const;
    // The tab's button in the toolbar.
    QToolButton* tabButton(int index) const;
    // The tab's content (the form itself, inside its scroll area).
    QWidget* page(int index) const;
    // The height the window takes for a tab, before the screen limits it.
    int preferredHeight(int index) const;

    // Shows the window, or brings it to the front when it is already shown.
    void present();

signals:
    // The General tab's "Support lumetra…".
    void supportRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void fitHeight();
    void applyAppearance();
    void refreshTabIcons();

    AppState& appState_;
    GlassBackground* background_;
    QButtonGroup* tabButtons_;
    QWidget* toolbar_;
    QStackedWidget* pages_;
    WindowTheme* theme_;
};

} // namespace lumetra

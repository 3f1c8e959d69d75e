#pragma once

#include "settings/MenuBarMetric.h"

#include <QList>
#include <QWidget>

#include <functional>

class QCheckBox;
class QPushButton;
class QStackedWidget;

namespace lumetra {

class AppState;

// The first-run flow: a greeting, then which metrics the menu bar shows and whether lumetra
// starts at login. Finishing writes the choices, brings the login item in line, marks the
// onboarding as completed and calls `onFinish`.
class WelcomeView : public QWidget {
    Q_OBJECT

public:
    enum class Step { welcome, configure };

    WelcomeView(AppState& appState, std::function<void()> onFinish, QWidget* parent = nullptr);

    // Shows the window centred on the screen, or brings it to the front.
    void present();

    Step step() const { return step_; }
    void setStep(Step step);

    QPushButton& getStartedButton() const { return *getStarted_; }
    QPushButton& doneButton() const { return *done_; }
    // The box that switches `metric` on (shared by metrics that go together).
    QCheckBox& choice(MenuBarMetric metric) const;
    QCheckBox& showCPU() const { return choice(MenuBarMetric::cpu); }
    QCheckBox& showMemory() const { return choice(MenuBarMetric::memory); }
    QCheckBox& showTemperature() const { return choice(MenuBarMetric::temperature); }
    QCheckBox& showNetwork() const { return choice(MenuBarMetric::download); }
    QCheckBox& launchAtLogin() const { return *launchAtLogin_; }

    // What "Done" does.
    void finish();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* buildWelcomePage();
    QWidget* buildConfigurePage();

    AppState& appState_;
    std::function<void()> onFinish_;
    Step step_ = Step::welcome;
    QStackedWidget* pages_;
    QPushButton* getStarted_ = nullptr;
    QPushButton* done_ = nullptr;
    // One box per choice of the metric catalogue, and the metrics each switches.
    struct Choice {
        QCheckBox* box;
        QList<MenuBarMetric> metrics;
    };
    QList<Choice> choices_;
    QCheckBox* launchAtLogin_ = nullptr;
};

} // namespace lumetra

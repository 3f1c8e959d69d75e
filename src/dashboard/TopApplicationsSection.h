#pragma once

#include "dashboard/DashboardTheme.h"
#include "model/TopApplications.h"
#include "samplers/process/ProcessSignaller.h"

#include <QWidget>

#include <functional>
#include <optional>

class QAbstractButton;

namespace lumetra {

class FooterButton;
class SettingsStore;
class TopApplicationsMonitor;

// The dashboard's "Top" section: the five groups using the most CPU or memory, picked by a
// two-way switch saved in the settings. A row's context menu and its "⋯" button offer Quit and
// Force Quit (after a confirmation) for the user's own processes; what could not be stopped
// is said in the section. Processes are read only while the section is shown.
class TopApplicationsSection final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kRows = 5;
    static constexpr double kTitleSize = 11;
    static constexpr double kRowHeight = 20;
    static constexpr double kIconSize = 16;
    static constexpr double kFontSize = 11;
    static constexpr double kCaptionSize = 10;

    TopApplicationsSection(TopApplicationsMonitor& monitor, SettingsStore& settings,
                           std::function<const DashboardTheme&()> theme, QWidget* parent = nullptr);
    ~TopApplicationsSection() override;

    // Shows `top` instead of the monitor's (pictures, tests); none goes back.
    void setFixedTopApplications(std::optional<TopApplications> top);
    const TopApplications& shown() const;
    QList<TopApplication> rows() const;

    double heightForWidth(double width) const;
    // The message under the rows after a stop that did not (fully) work; empty otherwise.
    QString statusText() const { return status_; }

    // What a stop did, as the section says it; empty when every process was signalled.
    static QString outcomeText(const TopApplication& application, const StopOutcome& outcome,
                               bool force);
    // The desktop's own process manager, when one is installed; empty otherwise.
    static QString systemMonitorProgram();

    // Asks, then stops `row`'s group; `confirm` replaces the dialog in tests.
    void requestStop(int row, bool force);
    void setConfirmation(std::function<bool(const TopApplication&, bool)> confirm) {
        confirm_ = std::move(confirm);
    }

signals:
    void preferredHeightChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRectF rowRect(int row) const;
    QRectF pickerRect() const;
    double rowsTop() const;
    int rowAt(const QPointF& position) const;
    void showMenu(int row, const QPoint& globalPosition);
    void layoutChildren();
    void changed();
    bool confirm(const TopApplication& application, bool force);

    TopApplicationsMonitor& monitor_;
    SettingsStore& settings_;
    std::function<const DashboardTheme&()> theme_;
    std::optional<TopApplications> fixed_;
    std::function<bool(const TopApplication&, bool)> confirm_;
    QList<QAbstractButton*> rowButtons_;
    FooterButton* systemMonitorButton_ = nullptr;
    QString status_;
    bool watching_ = false;
    int lastHeight_ = 0;
};

} // namespace lumetra

#pragma once

#include "dashboard/DashboardState.h"
#include "dashboard/DashboardTheme.h"

#include <QRectF>
#include <QWidget>

#include <memory>
#include <optional>

namespace lumetra {

class FooterButton;
class SettingsStore;
class SystemMonitor;
class TopApplicationsMonitor;
class TopApplicationsSection;

// The popover's content: a header, the glance strip, the metric cards in the chosen style,
// the disk and network cards and a footer with three buttons. 280 wide; the height follows
// the content. Painted in one pass from the monitor's current state, so a redraw builds
// nothing but the presentations; it redraws whenever the monitor or the card style changes,
// and while hidden after being shown it only notes the change until it is shown again.
class DashboardView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY darkChanged)

public:
    static constexpr int kWidth = 280;
    static constexpr double kPadding = 12;
    static constexpr double kSpacing = 10;

    // With `top`, the "Top" section under the cards lists what uses the machine.
    DashboardView(SystemMonitor& monitor, SettingsStore& settings, QWidget* parent = nullptr,
                  TopApplicationsMonitor* top = nullptr);
    ~DashboardView() override;

    bool isDark() const { return dark_; }
    void setDark(bool dark);
    // A fixed font family and accent colour instead of the desktop's (reproducible pictures);
    // an empty family goes back to the desktop's.
    void setFixedLook(const QString& fontFamily);

    // Shows `state` instead of the monitor's until called with none (pictures, previews).
    void setFixedState(std::optional<DashboardState> state);

    // The "Top" section, when the dashboard has one.
    TopApplicationsSection* topApplicationsSection() const { return topSection_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // The tooltip shown at `position`: the sensors behind the temperature, the interfaces
    // behind the rates; empty elsewhere.
    QString toolTipAt(const QPointF& position) const;

signals:
    void settingsRequested();
    void supportRequested();
    void quitRequested();
    void darkChanged();
    // The content needs another height (a card style, a volume more or less).
    void preferredHeightChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Content;
    Content content() const;
    const Content& currentLayout() const;
    void contentChanged();
    void historyChanged();
    void refreshTheme();
    void placeFooter(double top);

    SystemMonitor& monitor_;
    SettingsStore& settings_;
    bool dark_ = false;
    std::optional<QString> fixedFamily_;
    std::optional<DashboardState> fixedState_;
    DashboardTheme theme_;
    int height_ = 0;
    // Hidden after having been shown (the popover closed): changes wait for the next show.
    bool parked_ = false;
    bool stale_ = false;
    mutable std::unique_ptr<Content> layout_;
    mutable bool layoutFresh_ = false;
    bool historyPending_ = false;
    FooterButton* settingsButton_;
    FooterButton* supportButton_;
    FooterButton* quitButton_;
    QWidget* glanceStrip_;
    TopApplicationsSection* topSection_ = nullptr;
};

} // namespace lumetra

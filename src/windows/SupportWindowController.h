#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace lumetra {

class AppState;
class SupportLumetraView;

// The support window's owner: the window is made on first show, then reused; closing it only
// hides it. Showing it again brings the one window to the front.
class SupportWindowController : public QObject {
    Q_OBJECT

public:
    static constexpr int kWidth = 340;
    static constexpr int kHeight = 420;

    explicit SupportWindowController(QObject* parent = nullptr);
    ~SupportWindowController() override;

    void show(AppState& appState);
    void close();

    // The window, once shown.
    QWidget* window() const { return window_; }
    SupportLumetraView* view() const;

private:
    QPointer<QWidget> window_;
    QPointer<SupportLumetraView> view_;
};

} // namespace lumetra

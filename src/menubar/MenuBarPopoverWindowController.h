#pragma once

#include "menubar/PopoverPlacement.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QRect>

class QScrollArea;
class QScrollBar;
class QWindow;
class QWidget;

namespace lumetra {

class AppState;
class MenuBarPopoverContent;
class OutsideClickCatcher;

// Owns the popover: a window created on first show and reused, placed around the panel
// item's anchor where the platform allows, hidden by a click outside it and by Escape.
class MenuBarPopoverWindowController : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool visible READ isVisible NOTIFY visibleChanged)

public:
    explicit MenuBarPopoverWindowController(AppState& appState, QObject* parent = nullptr);
    ~MenuBarPopoverWindowController() override;

    // Shows the popover beside the panel that holds `anchor` (screen coordinates in
    // device-independent pixels; an empty rectangle means the mouse pointer), or moves it
    // there when it is already shown.
    void show(const QRect& anchor);
    void hide();
    // A click on the panel item: hides a shown popover, shows a hidden one. A click on the
    // item that itself closed the popup (the popup sees it as a press outside just before
    // the item reports it) counts as the hiding one.
    void toggle(const QRect& anchor);

    bool isVisible() const;
    // Absent until the first show.
    QWidget* window() const;
    MenuBarPopoverContent* content() const { return content_; }

    // What the popover's window is on a platform.
    enum class WindowKind {
        // A frameless popup the app places by the panel, closed by any click outside it
        // (the pointer is grabbed).
        Popup,
        // An X11 client of a Wayland compositor (Xwayland): placed by the app, but a grab
        // sees no click on a Wayland surface, so it is a frameless window that takes the
        // focus and closes when it loses it.
        FocusedPanel,
        // The same where the compositor puts managed X11 windows where it likes (centred):
        // an override-redirect window, which every compositor leaves where the app puts it.
        // It has no X11 focus, so it grabs the keyboard for Escape; a click elsewhere lands
        // on the catcher.
        BypassingPanel,
        // A Wayland client cannot place its windows: a small titled window the compositor
        // places, closed when it loses the focus.
        TitledWindow,
    };
    // `platformName` is Qt's platform; `waylandSession` whether a Wayland compositor runs
    // the session (WAYLAND_DISPLAY set); `positionIgnored` whether the compositor was seen
    // to move a popover away from where it was put.
    static WindowKind windowKindFor(const QString& platformName, bool waylandSession,
                                    bool positionIgnored = false);
    // Whether a window that was asked to go to each of `asked` in turn, and is reported at
    // `got`, is at one of them (within a rounding error of scaled coordinates): a report
    // may come late, after the next request.
    static bool placedAsAsked(const QList<QPoint>& asked, const QPoint& got);
    // The screens as the placement sees them.
    static QList<ScreenSpace> screenSpaces();

signals:
    void visibleChanged();
    void settingsRequested();
    void supportRequested();
    void quitRequested();

private:
    class Window;
    void createWindow();
    void coverOutside();
    void place();
    void noteHidden();
    void noteFocusMoved(QWindow* focused);
    void notePressOutside(const QPoint& globalPosition);
    void noteMoved(const QPoint& position);
    void bypassWindowManager();

    AppState& appState_;
    QPointer<Window> window_;
    MenuBarPopoverContent* content_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QScrollBar* overlayBar_ = nullptr;
    QPointer<OutsideClickCatcher> catcher_;
    QRect anchor_;
    // Where place() put the window since it was last shown.
    QList<QPoint> asked_;
    QPoint pressOutside_;
    QElapsedTimer sincePressOutside_;
    bool popoverHadFocus_ = false;
    // The window manager was seen to put the popover elsewhere than asked.
    bool positionIgnored_ = false;
};

} // namespace lumetra

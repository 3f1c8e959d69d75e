#pragma once

#include "menubar/PopoverPlacement.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QRect>

class QScrollArea;
class QWidget;

namespace lumetra {

class AppState;
class MenuBarPopoverContent;

// Owns the popover: a frameless popup window created on first show and reused, placed
// around the panel item's anchor, hidden by any click outside it and by Escape.
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

    // Whether windows of this Qt platform can be placed by the app: not on Wayland, where
    // the popover is a small titled window instead.
    static bool platformPlacesWindows(const QString& platformName);
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
    void place();
    void noteHidden();
    void notePressOutside(const QPoint& globalPosition);

    AppState& appState_;
    QPointer<Window> window_;
    MenuBarPopoverContent* content_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QRect anchor_;
    QPoint pressOutside_;
    QElapsedTimer sincePressOutside_;
};

} // namespace lumetra

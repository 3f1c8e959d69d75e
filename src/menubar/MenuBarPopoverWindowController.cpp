#include "menubar/MenuBarPopoverWindowController.h"

#include "menubar/MenuBarPopoverContent.h"
#include "menubar/OutsideClickCatcher.h"
#include "menubar/PopoverPlacement.h"
#include "menubar/WindowTranslucency.h"
#include "menubar/X11WindowAt.h"
#include "model/Logging.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QRegion>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

namespace lumetra {

namespace {

// A click on the item reaches us twice: first as the press outside the popup that closes it,
// then as the item's own activation, this soon after and about this close to its anchor.
constexpr qint64 kSameClickMs = 500;
constexpr int kSameClickSlack = 24;
// How long a lost focus must stay away before the popover closes.
constexpr int kFocusSettleMs = 150;
// The scroll bar over the dashboard's right margin, and its distance from the edge.
constexpr int kOverlayBarWidth = 6;
constexpr int kOverlayBarGap = 3;

// A thin scroll bar over `parent` that follows `hidden` (the scroll area's own) both ways
// and shows only while there is something to scroll.
QScrollBar* overlayScrollBar(QScrollBar* hidden, QWidget* parent) {
    auto* bar = new QScrollBar(Qt::Vertical, parent);
    bar->setObjectName(QStringLiteral("LumetraPopoverScrollBar"));
    bar->setStyleSheet(
        QStringLiteral(
            "QScrollBar:vertical { width: %1px; background: transparent; margin: 0; }"
            "QScrollBar::handle:vertical { background: rgba(128, 128, 128, 140); border-radius: "
            "%2px; min-height: 24px; }"
            "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
            "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }")
            .arg(kOverlayBarWidth)
            .arg(kOverlayBarWidth / 2));
    bar->hide();
    QObject::connect(hidden, &QScrollBar::rangeChanged, bar, [bar, hidden](int low, int high) {
        bar->setRange(low, high);
        bar->setPageStep(hidden->pageStep());
        bar->setVisible(high > low);
    });
    QObject::connect(hidden, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    QObject::connect(bar, &QScrollBar::valueChanged, hidden, &QScrollBar::setValue);
    return bar;
}

// The most of the screen's height a titled window's content takes.
constexpr double kTitledShare = 0.85;
// How far a window may land from where it was put and still count as placed there: scaled
// coordinates round differently on the way to the X server and back.
constexpr int kPlacementSlack = 2;

} // namespace

class MenuBarPopoverWindowController::Window : public QWidget {
public:
    Window(MenuBarPopoverWindowController& controller, bool translucent, WindowKind kind)
        : QWidget(nullptr, flagsFor(kind)), controller_(controller),
          translucent_(translucent && kind != WindowKind::TitledWindow), kind_(kind) {
        setAttribute(Qt::WA_TranslucentBackground, translucent_);
        setAttribute(Qt::WA_DeleteOnClose, false);
        setObjectName(QStringLiteral("LumetraPopover"));
        setWindowTitle(QStringLiteral("lumetra"));
    }

    WindowKind kind() const { return kind_; }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) {
            hide();
            return;
        }
        QWidget::keyPressEvent(event);
    }
    void mousePressEvent(QMouseEvent* event) override {
        // Outside the window: this press closes the popup (Qt does so in the base class).
        if (!rect().contains(event->position().toPoint()))
            controller_.notePressOutside(event->globalPosition().toPoint());
        QWidget::mousePressEvent(event);
    }
    void hideEvent(QHideEvent* event) override {
        QWidget::hideEvent(event);
        controller_.noteHidden();
    }
    void moveEvent(QMoveEvent* event) override {
        QWidget::moveEvent(event);
        if (isVisible())
            controller_.noteMoved(pos());
    }
    void showEvent(QShowEvent* event) override {
        QWidget::showEvent(event);
        emit controller_.visibleChanged();
    }
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        // Opaque popovers get their rounded corners from a shape instead; a titled window
        // keeps its corners square under the title bar.
        if (!translucent_ && kind_ != WindowKind::TitledWindow) {
            QPainterPath shape;
            shape.addRoundedRect(QRectF(rect()), MenuBarPopoverContent::kCornerRadius,
                                 MenuBarPopoverContent::kCornerRadius);
            setMask(QRegion(shape.toFillPolygon().toPolygon()));
        }
    }
    bool event(QEvent* event) override {
        // The content changed its height (another card style): follow it in place.
        // Queued on the window itself, so a window replaced meanwhile drops the call.
        if (event->type() == QEvent::LayoutRequest && isVisible())
            QMetaObject::invokeMethod(
                this, [this] { controller_.place(); }, Qt::QueuedConnection);
        return QWidget::event(event);
    }

private:
    static Qt::WindowFlags flagsFor(WindowKind kind) {
        switch (kind) {
        case WindowKind::Popup:
            return Qt::Popup | Qt::FramelessWindowHint;
        case WindowKind::FocusedPanel:
            return Qt::Tool | Qt::FramelessWindowHint;
        case WindowKind::BypassingPanel:
            // Not a tool window: compositors give the focus to no override-redirect window
            // of a utility's or a menu's type.
            return Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint;
        case WindowKind::TitledWindow:
            break;
        }
        return Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    }

    MenuBarPopoverWindowController& controller_;
    bool translucent_;
    WindowKind kind_;
};

MenuBarPopoverWindowController::MenuBarPopoverWindowController(AppState& appState, QObject* parent)
    : QObject(parent), appState_(appState) {
    // A popup closes on a click outside by itself; the other kinds when the focus they had
    // moves elsewhere. (Not on ActivationChange: a parentless tool window still counts as
    // active beside another window of ours in most styles, and gets none.)
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            &MenuBarPopoverWindowController::noteFocusMoved);
}

MenuBarPopoverWindowController::~MenuBarPopoverWindowController() {
    delete window_.data();
    delete catcher_.data();
}

QWidget* MenuBarPopoverWindowController::window() const {
    return window_.data();
}

bool MenuBarPopoverWindowController::isVisible() const {
    return window_ && window_->isVisible();
}

MenuBarPopoverWindowController::WindowKind
MenuBarPopoverWindowController::windowKindFor(const QString& platformName, bool waylandSession,
                                              bool positionIgnored) {
    if (platformName.startsWith(QLatin1String("wayland")))
        return WindowKind::TitledWindow;
    if (!waylandSession || platformName != QLatin1String("xcb"))
        return WindowKind::Popup;
    return positionIgnored ? WindowKind::BypassingPanel : WindowKind::FocusedPanel;
}

bool MenuBarPopoverWindowController::placedAsAsked(const QList<QPoint>& asked, const QPoint& got) {
    return std::any_of(asked.begin(), asked.end(), [&got](const QPoint& point) {
        return std::abs(point.x() - got.x()) <= kPlacementSlack &&
               std::abs(point.y() - got.y()) <= kPlacementSlack;
    });
}

void MenuBarPopoverWindowController::createWindow() {
    const WindowKind kind =
        windowKindFor(QGuiApplication::platformName(),
                      !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"), positionIgnored_);
    const bool translucent = kind != WindowKind::TitledWindow && windowTranslucencyAvailable();
    window_ = new Window(*this, translucent, kind);
    auto* layout = new QVBoxLayout(window_);
    layout->setContentsMargins(0, 0, 0, 0);
    // On a small screen at a large scale the dashboard is taller than the screen: the window
    // then stops at the screen's edge and the content scrolls.
    scroll_ = new QScrollArea(window_);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The dashboard is laid out at its one width: its own scroll bar would take room from it.
    // A thin one stands over the right margin instead, in step with the hidden one.
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(true);
    scroll_->setAutoFillBackground(false);
    scroll_->viewport()->setAutoFillBackground(false);
    content_ = new MenuBarPopoverContent(appState_);
    content_->setOpaqueBackground(!translucent);
    content_->setSquareCorners(kind == WindowKind::TitledWindow);
    // Where the compositor blurs behind the popover the glass keeps its translucency; else
    // it is drawn dense enough to read over any desktop.
    if (translucent)
        content_->setBlurredBehind(requestBlurBehind(window_->winId()));
    scroll_->setWidget(content_);
    layout->addWidget(scroll_);
    overlayBar_ = overlayScrollBar(scroll_->verticalScrollBar(), window_);
    connect(content_, &MenuBarPopoverContent::settingsRequested, this, [this] {
        hide();
        emit settingsRequested();
    });
    connect(content_, &MenuBarPopoverContent::supportRequested, this, [this] {
        hide();
        emit supportRequested();
    });
    connect(content_, &MenuBarPopoverContent::quitRequested, this,
            &MenuBarPopoverWindowController::quitRequested);
}

void MenuBarPopoverWindowController::show(const QRect& anchor) {
    if (!window_)
        createWindow();
    anchor_ = anchor.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : anchor;
    asked_.clear();
    place();
    if (window_->kind() == WindowKind::FocusedPanel ||
        window_->kind() == WindowKind::BypassingPanel)
        coverOutside();
    window_->show();
    window_->raise();
    // A focused window can tell a click on another window by losing the focus, and take
    // Escape. An override-redirect window is not given the X11 focus (the compositor takes
    // back one it takes itself), but the keyboard while it is shown: the compositor sends
    // the keys to Xwayland, which hands them to the grab.
    if (window_->kind() == WindowKind::BypassingPanel)
        window_->grabKeyboard();
    else if (window_->kind() != WindowKind::Popup)
        window_->activateWindow();
}

void MenuBarPopoverWindowController::coverOutside() {
    if (!catcher_) {
        catcher_ = new OutsideClickCatcher(window_->kind() == WindowKind::BypassingPanel);
        connect(catcher_, &OutsideClickCatcher::clicked, this, [this](const QPoint& position) {
            // Itself first: a catcher left up without its popover would swallow every click.
            catcher_->hide();
            notePressOutside(position);
            hide();
        });
    }
    QScreen* screen = QGuiApplication::screenAt(anchor_.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect area = screen->availableGeometry();
    // An undecorated window the size of the screen is taken for a full-screen one, which
    // would hide the panels.
    if (area == screen->geometry())
        area.setTop(area.top() + 1);
    catcher_->cover(area);
}

void MenuBarPopoverWindowController::hide() {
    if (window_)
        window_->hide();
}

void MenuBarPopoverWindowController::toggle(const QRect& anchor) {
    if (isVisible()) {
        hide();
        return;
    }
    const QRect target = anchor.isEmpty() ? anchor_ : anchor;
    const bool sameClick =
        sincePressOutside_.isValid() && sincePressOutside_.elapsed() < kSameClickMs &&
        target.adjusted(-kSameClickSlack, -kSameClickSlack, kSameClickSlack, kSameClickSlack)
            .contains(pressOutside_);
    sincePressOutside_.invalidate();
    if (sameClick)
        return;
    show(anchor);
}

void MenuBarPopoverWindowController::notePressOutside(const QPoint& globalPosition) {
    pressOutside_ = globalPosition;
    sincePressOutside_.start();
}

void MenuBarPopoverWindowController::noteMoved(const QPoint& position) {
    if (window_->kind() != WindowKind::FocusedPanel || asked_.isEmpty() ||
        placedAsAsked(asked_, position))
        return;
    qCInfo(logUi).nospace() << "the window manager moved the popover from " << asked_.last()
                            << " to " << position << ": it bypasses the window manager from now on";
    // Not while Qt is still handling the move.
    QMetaObject::invokeMethod(this, &MenuBarPopoverWindowController::bypassWindowManager,
                              Qt::QueuedConnection);
}

void MenuBarPopoverWindowController::bypassWindowManager() {
    if (!window_ || positionIgnored_)
        return;
    positionIgnored_ = true;
    // New windows rather than new flags on the old ones: compositors tell override-redirect
    // windows from managed ones when they are created. The catcher, a managed window as big
    // as the work area, may have been moved or tiled too.
    window_->hide();
    delete window_.data();
    content_ = nullptr;
    scroll_ = nullptr;
    overlayBar_ = nullptr;
    delete catcher_.data();
    // The focus the old window had is gone with it, whenever the platform reports that.
    popoverHadFocus_ = false;
    // Shown again even when it was hidden meanwhile: the compositor's moves can take the
    // focus from it on their way.
    show(anchor_);
}

void MenuBarPopoverWindowController::noteFocusMoved(QWindow* focused) {
    if (!window_ || window_->kind() == WindowKind::Popup)
        return;
    if (window_->kind() == WindowKind::BypassingPanel) {
        // It never has the focus (it grabs the keyboard instead), and the compositor may put
        // a window of ours that takes it (the settings) over the catcher: then it goes.
        if (focused && focused->isVisible() && focused != window_->windowHandle() &&
            window_->isVisible() && !(catcher_ && focused == catcher_->windowHandle()))
            hide();
        return;
    }
    // Followed while hidden too: the platform may keep the focus on the hidden window, and
    // then reports no change when it shows again.
    const bool had = popoverHadFocus_;
    popoverHadFocus_ = focused && focused == window_->windowHandle();
    if (!had || popoverHadFocus_ || !window_->isVisible())
        return;
    // The click that took the focus may have been on the item itself; where the pointer was
    // last seen tells.
    const QPoint pointer = QCursor::pos();
    // A loss reported late, for a hide just before the popover showed again, is followed by
    // the focus coming back: close only when it stays away.
    QTimer::singleShot(kFocusSettleMs, this, [this, pointer] {
        if (window_ && window_->isVisible() &&
            QGuiApplication::focusWindow() != window_->windowHandle()) {
            notePressOutside(pointer);
            hide();
        }
    });
}

void MenuBarPopoverWindowController::noteHidden() {
    if (window_ && window_->kind() == WindowKind::BypassingPanel)
        window_->releaseKeyboard();
    if (catcher_)
        catcher_->hide();
    emit visibleChanged();
}

QList<ScreenSpace> MenuBarPopoverWindowController::screenSpaces() {
    QList<ScreenSpace> spaces;
    for (const QScreen* screen : QGuiApplication::screens())
        spaces.append({screen->geometry(), screen->devicePixelRatio()});
    return spaces;
}

void MenuBarPopoverWindowController::place() {
    if (!window_)
        return;
    const int height = content_->preferredHeight();
    QScreen* screen = QGuiApplication::screenAt(anchor_.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen) {
        window_->setFixedSize(MenuBarPopoverContent::kWidth, height);
        window_->move(popoverFrame(QRectF(anchor_), QSizeF(window_->size())).toRect().topLeft());
        return;
    }
    const QRectF geometry(screen->geometry());
    const QRectF available(screen->availableGeometry());
    const QPointF click = QRectF(anchor_).center();
    // Without a work area (no window manager publishes one) the panel is the window under
    // the click, asked of the X server in its own pixels.
    QRectF windowUnderClick;
    if (available.contains(click)) {
        const QList<ScreenSpace> spaces = screenSpaces();
        // Neither the popover nor the catcher is the panel.
        QList<unsigned long> ours{window_->internalWinId()};
        if (catcher_)
            ours.append(catcher_->internalWinId());
        if (const std::optional<QRect> found = x11WindowAt(logicalToDevice(click, spaces), ours)) {
            const QPointF topLeft = deviceToLogical(found->topLeft(), spaces);
            windowUnderClick = QRectF(topLeft, QSizeF(found->size()) / screen->devicePixelRatio());
        }
    }
    const QRectF panel = panelAt(click, geometry, available, windowUnderClick);
    const QSizeF wanted(MenuBarPopoverContent::kWidth, height);
    QRect placed = panel.isEmpty() ? fitPopoverToScreen(popoverFrame(QRectF(anchor_), wanted),
                                                        QRectF(anchor_), available.toRect())
                                   : placeBesidePanel(click, wanted, panel, geometry, available);
    placed.setHeight(std::min(placed.height(), int(available.height())));
    // A Wayland client learns neither the panels' room nor where its window goes, and the
    // title bar comes on top: keep the titled window well inside the screen.
    if (window_->kind() == WindowKind::TitledWindow)
        placed.setHeight(std::min(placed.height(), int(available.height() * kTitledShare)));
    window_->setFixedSize(placed.size());
    // Over the margin, clear of the rounded corners.
    const int inset = int(MenuBarPopoverContent::kCornerRadius);
    overlayBar_->setGeometry(placed.width() - kOverlayBarWidth - kOverlayBarGap, inset,
                             kOverlayBarWidth, std::max(0, placed.height() - 2 * inset));
    overlayBar_->raise();
    if (!asked_.contains(placed.topLeft()))
        asked_.append(placed.topLeft());
    window_->move(placed.topLeft());
}

} // namespace lumetra

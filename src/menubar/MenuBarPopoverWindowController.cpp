#include "menubar/MenuBarPopoverWindowController.h"

#include "menubar/MenuBarPopoverContent.h"
#include "menubar/PopoverPlacement.h"
#include "menubar/WindowTranslucency.h"
#include "menubar/X11WindowAt.h"

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
#include <QVBoxLayout>
#include <QWidget>

namespace lumetra {

namespace {

// A click on the item reaches us twice: first as the press outside the popup that closes it,
// then as the item's own activation, this soon after and about this close to its anchor.
constexpr qint64 kSameClickMs = 500;
constexpr int kSameClickSlack = 24;

} // namespace

class MenuBarPopoverWindowController::Window : public QWidget {
public:
    // `placeable`: a frameless popup the app places by the panel. Otherwise (a Wayland
    // client, which cannot place its windows) a small titled window the compositor places,
    // kept out of task lists where the platform allows, closed when it loses the focus.
    Window(MenuBarPopoverWindowController& controller, bool translucent, bool placeable)
        : QWidget(nullptr, placeable ? Qt::Popup | Qt::FramelessWindowHint
                                     : Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
          controller_(controller), translucent_(translucent && placeable), popup_(placeable) {
        setAttribute(Qt::WA_TranslucentBackground, translucent_);
        setAttribute(Qt::WA_DeleteOnClose, false);
        setObjectName(QStringLiteral("LumetraPopover"));
        setWindowTitle(QStringLiteral("lumetra"));
    }

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
    void showEvent(QShowEvent* event) override {
        QWidget::showEvent(event);
        emit controller_.visibleChanged();
    }
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        // Opaque windows get their rounded corners from a shape instead.
        if (!translucent_) {
            QPainterPath shape;
            shape.addRoundedRect(QRectF(rect()), MenuBarPopoverContent::kCornerRadius,
                                 MenuBarPopoverContent::kCornerRadius);
            setMask(QRegion(shape.toFillPolygon().toPolygon()));
        }
    }
    void changeEvent(QEvent* event) override {
        QWidget::changeEvent(event);
        // A popup closes on a click outside by itself; the titled window on losing focus.
        if (!popup_ && event->type() == QEvent::ActivationChange && isVisible() &&
            !isActiveWindow())
            hide();
    }
    bool event(QEvent* event) override {
        // The content changed its height (another card style): follow it in place.
        if (event->type() == QEvent::LayoutRequest && isVisible())
            QMetaObject::invokeMethod(
                &controller_, [this] { controller_.place(); }, Qt::QueuedConnection);
        return QWidget::event(event);
    }

private:
    MenuBarPopoverWindowController& controller_;
    bool translucent_;
    bool popup_;
};

MenuBarPopoverWindowController::MenuBarPopoverWindowController(AppState& appState, QObject* parent)
    : QObject(parent), appState_(appState) {}

MenuBarPopoverWindowController::~MenuBarPopoverWindowController() {
    delete window_.data();
}

QWidget* MenuBarPopoverWindowController::window() const {
    return window_.data();
}

bool MenuBarPopoverWindowController::isVisible() const {
    return window_ && window_->isVisible();
}

bool MenuBarPopoverWindowController::platformPlacesWindows(const QString& platformName) {
    return !platformName.startsWith(QLatin1String("wayland"));
}

void MenuBarPopoverWindowController::createWindow() {
    const bool placeable = platformPlacesWindows(QGuiApplication::platformName());
    const bool translucent = placeable && windowTranslucencyAvailable();
    window_ = new Window(*this, translucent, placeable);
    auto* layout = new QVBoxLayout(window_);
    layout->setContentsMargins(0, 0, 0, 0);
    // On a small screen at a large scale the dashboard is taller than the screen: the window
    // then stops at the screen's edge and the content scrolls.
    scroll_ = new QScrollArea(window_);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    scroll_->setWidgetResizable(true);
    scroll_->setAutoFillBackground(false);
    scroll_->viewport()->setAutoFillBackground(false);
    content_ = new MenuBarPopoverContent(appState_);
    content_->setOpaqueBackground(!translucent);
    // Where the compositor blurs behind the popover the glass keeps its translucency; else
    // it is drawn dense enough to read over any desktop.
    if (translucent)
        content_->setBlurredBehind(requestBlurBehind(window_->winId()));
    scroll_->setWidget(content_);
    layout->addWidget(scroll_);
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
    place();
    window_->show();
    window_->raise();
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

void MenuBarPopoverWindowController::noteHidden() {
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
        if (const std::optional<QRect> found =
                x11WindowAt(logicalToDevice(click, spaces), window_->internalWinId())) {
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
    // Scrolling: the scroll bar takes its width from the content, so the window stays as
    // wide as ever.
    const int bar = scroll_->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    content_->setFixedWidth(placed.height() < height ? MenuBarPopoverContent::kWidth - bar
                                                     : MenuBarPopoverContent::kWidth);
    window_->setFixedSize(placed.size());
    window_->move(placed.topLeft());
}

} // namespace lumetra

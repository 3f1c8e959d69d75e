#include "menubar/MenuBarPopoverWindowController.h"

#include "menubar/MenuBarPopoverContent.h"
#include "menubar/PopoverPlacement.h"
#include "menubar/WindowTranslucency.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QRegion>
#include <QScreen>
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
    Window(MenuBarPopoverWindowController& controller, bool translucent)
        : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint), controller_(controller),
          translucent_(translucent) {
        setAttribute(Qt::WA_TranslucentBackground, translucent);
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

void MenuBarPopoverWindowController::createWindow() {
    const bool translucent = windowTranslucencyAvailable();
    window_ = new Window(*this, translucent);
    auto* layout = new QVBoxLayout(window_);
    layout->setContentsMargins(0, 0, 0, 0);
    content_ = new MenuBarPopoverContent(appState_, window_);
    content_->setOpaqueBackground(!translucent);
    layout->addWidget(content_);
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

void MenuBarPopoverWindowController::place() {
    if (!window_)
        return;
    const QSize size(MenuBarPopoverContent::kWidth, content_->preferredHeight());
    QScreen* screen = QGuiApplication::screenAt(anchor_.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRectF frame = popoverFrame(QRectF(anchor_), QSizeF(size));
    const QRect placed =
        screen ? fitPopoverToScreen(frame, QRectF(anchor_), screen->availableGeometry())
               : frame.toRect();
    window_->setFixedSize(placed.size());
    window_->move(placed.topLeft());
}

} // namespace lumetra

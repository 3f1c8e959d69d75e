#include "windows/SupportWindowController.h"

#include "core/AppState.h"
#include "windows/SupportLumetraView.h"
#include "windows/WindowTheme.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWidget>

namespace lumetra {

SupportWindowController::SupportWindowController(QObject* parent) : QObject(parent) {}

SupportWindowController::~SupportWindowController() {
    delete window_;
}

void SupportWindowController::show(AppState& appState) {
    if (!window_) {
        auto* window = new QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint |
                                                Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
        window->setObjectName(QStringLiteral("SupportWindow"));
        window->setWindowTitle(tr("Support lumetra"));
        window->setFixedSize(kWidth, kHeight);
        auto* layout = new QVBoxLayout(window);
        layout->setContentsMargins(0, 0, 0, 0);
        view_ = new SupportLumetraView(
            appState, [this] { close(); }, window);
        layout->addWidget(view_);
        new WindowTheme(window, appState.settings());
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            window->move(screen->availableGeometry().center() - window->rect().center());
        window_ = window;
        view_->setFocus();
    }
    window_->show();
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->raise();
    window_->activateWindow();
}

SupportLumetraView* SupportWindowController::view() const {
    return view_;
}

void SupportWindowController::close() {
    if (window_)
        window_->close();
}

} // namespace lumetra

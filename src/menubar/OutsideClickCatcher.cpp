#include "menubar/OutsideClickCatcher.h"

#include <QMouseEvent>
#include <QPainter>

namespace lumetra {

OutsideClickCatcher::OutsideClickCatcher(bool bypassWindowManager)
    // A tool window: compositors focus no override-redirect window of a utility's type.
    : QWidget(nullptr,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                  (bypassWindowManager ? Qt::X11BypassWindowManagerHint : Qt::WindowFlags())) {
    setObjectName(QStringLiteral("LumetraOutsideClickCatcher"));
    setWindowTitle(QStringLiteral("lumetra"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_DeleteOnClose, false);
}

void OutsideClickCatcher::cover(const QRect& area) {
    setGeometry(area);
    show();
}

void OutsideClickCatcher::mousePressEvent(QMouseEvent* event) {
    emit clicked(event->globalPosition().toPoint());
    event->accept();
}

void OutsideClickCatcher::paintEvent(QPaintEvent*) {
    // Fully transparent: the compositor shows what lies under it; X11 still delivers the
    // clicks, since input does not depend on alpha.
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
}

} // namespace lumetra

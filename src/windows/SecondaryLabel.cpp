#include "windows/SecondaryLabel.h"

#include "windows/WindowTheme.h"

#include <QEvent>

namespace lumetra {

SecondaryLabel::SecondaryLabel(const QString& text, QWidget* parent, Level level)
    : QLabel(text, parent), level_(level) {
    setWordWrap(true);
    restyle();
}

void SecondaryLabel::changeEvent(QEvent* event) {
    if ((event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) &&
        !restyling_)
        restyle();
    QLabel::changeEvent(event);
}

void SecondaryLabel::restyle() {
    // Our own palette change comes back as an event; the flag keeps it from looping.
    restyling_ = true;
    // Only the text colour is set here; everything else keeps following the window.
    const QPalette inherited = parentWidget() ? parentWidget()->palette() : QPalette();
    QPalette p;
    p.setColor(QPalette::WindowText, level_ == secondary ? WindowTheme::secondaryText(inherited)
                                                         : WindowTheme::tertiaryText(inherited));
    setPalette(p);
    restyling_ = false;
}

} // namespace lumetra

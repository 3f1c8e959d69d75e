#pragma once

#include <QWidget>

namespace lumetra {

// An invisible window over the work area, just under the popover, for X11 clients of a
// Wayland compositor: there a pointer grab never sees a click on a Wayland surface (the
// empty desktop, another application), so a click elsewhere lands here instead and is
// reported, the way a popup's grab would have taken it. Where the compositor moves managed
// windows where it likes, it bypasses the window manager, as the popover then does.
class OutsideClickCatcher : public QWidget {
    Q_OBJECT

public:
    explicit OutsideClickCatcher(bool bypassWindowManager = false);

    // Covers `area` (device-independent pixels) and shows, without taking the focus.
    void cover(const QRect& area);

signals:
    void clicked(const QPoint& globalPosition);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace lumetra

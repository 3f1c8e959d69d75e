#pragma once

#include "desktop/StatusNotifierIconPixmap.h"
#include "menubar/PanelIconShape.h"
#include "menubar/PanelItemContent.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QImage>
#include <QObject>

#include <memory>

namespace lumetra {

class DBusMenu;
struct PanelMenu;
class StatusNotifierItem;

// Drives the D-Bus panel item from what it should show: the label as text, the icon in the
// shape the panel draws, and the tooltip, sending each only when it changed. The tooltip's
// figures move on every tick, so on its own it is announced at most every few seconds.
class StatusNotifierItemDriver : public QObject {
    Q_OBJECT

public:
    StatusNotifierItemDriver(const QDBusConnection& bus, const PanelMenu& menu,
                             PanelIconShape shape, QObject* parent = nullptr);
    ~StatusNotifierItemDriver() override;

    // The symbolic icon's name in the desktop's icon theme: "<app id>-symbolic".
    static QString symbolicIconName();
    // An image as a StatusNotifierItem pixmap (ARGB32, network byte order).
    static StatusNotifierIconPixmap iconPixmap(const QImage& image);

    StatusNotifierItem& item() const { return *item_; }
    DBusMenu& menu() const { return *menu_; }
    PanelIconShape shape() const { return shape_; }

    void show(const PanelItemContent& content);

private:
    void showIcon(const PanelItemContent& content, bool& changed);

    PanelIconShape shape_;
    std::unique_ptr<DBusMenu> menu_;
    std::unique_ptr<StatusNotifierItem> item_;
    QElapsedTimer sinceToolTip_;
    // What the image shows now, so an unchanged label is not drawn again.
    QList<std::optional<double>> drawnLevels_;
    QList<LabelImagePiece> drawnPieces_;
};

} // namespace lumetra

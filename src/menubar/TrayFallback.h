#pragma once

#include "desktop/PanelMenu.h"
#include "menubar/PanelItemContent.h"

#include <QImage>
#include <QObject>
#include <QRect>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace lumetra {

// The tray icon that stands in while nobody draws the D-Bus item: Qt's QSystemTrayIcon
// with the square live icon, the label as its tooltip and the panel menu. Created on the
// first show, so Qt picks the tray protocol the session has then.
class TrayFallback : public QObject {
    Q_OBJECT

public:
    explicit TrayFallback(PanelMenu menu, QObject* parent = nullptr);
    ~TrayFallback() override;

    // Shows the icon with `content`, and keeps it current while shown.
    void show(const PanelItemContent& content);
    void hide();
    void update(const PanelItemContent& content);
    bool isShown() const;
    QSystemTrayIcon* trayIcon() const { return tray_.get(); }

signals:
    // A click on the icon, with its place on screen where the tray tells it.
    void activated(const QRect& geometry);
    void triggered(int id);

private:
    PanelMenu menu_;
    std::unique_ptr<QSystemTrayIcon> tray_;
    std::unique_ptr<QMenu> trayMenu_;
    QString toolTip_;
    QList<std::optional<double>> levels_;
    QImage image_;
    bool hasLevels_ = false;
};

} // namespace lumetra

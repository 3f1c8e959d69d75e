#include "menubar/TrayFallback.h"

#include "menubar/LiveIcon.h"

#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

namespace lumetra {

namespace {

constexpr int kTraySizes[] = {16, 22, 24, 32, 48};

} // namespace

TrayFallback::TrayFallback(PanelMenu menu, QObject* parent)
    : QObject(parent), menu_(std::move(menu)) {}

TrayFallback::~TrayFallback() = default;

bool TrayFallback::isShown() const {
    return tray_ && tray_->isVisible();
}

void TrayFallback::show(const PanelItemContent& content) {
    if (!tray_) {
        tray_ = std::make_unique<QSystemTrayIcon>();
        trayMenu_ = std::make_unique<QMenu>();
        for (const PanelMenuEntry& entry : menu_.entries) {
            const int id = entry.id;
            trayMenu_->addAction(entry.label, this, [this, id] { emit triggered(id); });
        }
        tray_->setContextMenu(trayMenu_.get());
        connect(tray_.get(), &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger ||
                        reason == QSystemTrayIcon::MiddleClick)
                        emit activated(tray_->geometry());
                });
    }
    update(content);
    tray_->show();
}

void TrayFallback::hide() {
    if (tray_)
        tray_->hide();
}

void TrayFallback::update(const PanelItemContent& content) {
    if (!tray_)
        return;
    if (content.label != toolTip_) {
        toolTip_ = content.label;
        tray_->setToolTip(toolTip_);
    }
    if (hasLevels_ && content.levels == levels_)
        return;
    hasLevels_ = true;
    levels_ = content.levels;
    // The icon is handed to the tray only when its pixels changed.
    const QImage image = LiveIcon::render(24, levels_);
    if (image == image_)
        return;
    image_ = image;
    QIcon icon;
    for (const int size : kTraySizes)
        icon.addPixmap(QPixmap::fromImage(LiveIcon::render(size, levels_)));
    tray_->setIcon(icon);
}

} // namespace lumetra

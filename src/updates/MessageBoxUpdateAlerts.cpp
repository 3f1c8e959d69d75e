#include "updates/MessageBoxUpdateAlerts.h"

#include "model/Logging.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

namespace lumetra {

std::unique_ptr<QMessageBox> MessageBoxUpdateAlerts::makeMessageBox(const UpdateAlert& alert) {
    auto box = std::make_unique<QMessageBox>();
    box->setIcon(alert.style == UpdateAlert::Style::warning ? QMessageBox::Warning
                                                            : QMessageBox::Information);
    box->setWindowTitle(QGuiApplication::applicationDisplayName());
    box->setText(alert.message);
    box->setInformativeText(alert.informativeText);
    box->setWindowModality(Qt::ApplicationModal);
    for (qsizetype i = 0; i < alert.buttons.size(); ++i) {
        const bool first = i == 0;
        QPushButton* button = box->addButton(alert.buttons[i], first ? QMessageBox::AcceptRole
                                                                     : QMessageBox::RejectRole);
        if (first)
            box->setDefaultButton(button);
        if (i == alert.buttons.size() - 1)
            box->setEscapeButton(button);
    }
    return box;
}

int MessageBoxUpdateAlerts::present(const UpdateAlert& alert) {
    const auto box = makeMessageBox(alert);
    // Lumetra has no window of its own in front: the alert must not open behind another
    // application's windows.
    box->show();
    box->raise();
    box->activateWindow();
    box->exec();
    // Buttons are matched by their text: the box orders its own list by role.
    const QAbstractButton* clicked = box->clickedButton();
    const qsizetype chosen = clicked ? alert.buttons.indexOf(clicked->text()) : -1;
    return chosen >= 0 ? static_cast<int>(chosen) : static_cast<int>(alert.buttons.size()) - 1;
}

void MessageBoxUpdateAlerts::openURL(const QUrl& url) {
    if (!QDesktopServices::openUrl(url))
        qCWarning(logUi, "No application could open %s", qUtf8Printable(url.toString()));
}

} // namespace lumetra

#pragma once

#include "updates/UpdateAlertPresenting.h"

#include <memory>

class QMessageBox;

namespace lumetra {

// The update alerts as message boxes.
class MessageBoxUpdateAlerts final : public UpdateAlertPresenting {
public:
    int present(const UpdateAlert& alert) override;
    void openURL(const QUrl& url) override;

    // The box for an alert, not yet shown: the texts, the buttons in order with the first as
    // default and the last taking Escape.
    static std::unique_ptr<QMessageBox> makeMessageBox(const UpdateAlert& alert);
};

} // namespace lumetra

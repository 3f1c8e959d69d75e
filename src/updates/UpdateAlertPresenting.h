#pragma once

#include "updates/UpdateAlert.h"

#include <QUrl>

namespace lumetra {

// Shows update alerts to the user; the policy runs against a recording stub in tests.
class UpdateAlertPresenting {
public:
    virtual ~UpdateAlertPresenting() = default;

    // Brings the application in front of the others, shows the alert application-modally and
    // blocks until it is dismissed. Returns the index of the button pressed in
    // `alert.buttons`; dismissing without a button counts as the last one.
    virtual int present(const UpdateAlert& alert) = 0;

    // Opens the URL with the user's default handler; one that cannot be opened is ignored.
    virtual void openURL(const QUrl& url) = 0;
};

} // namespace lumetra

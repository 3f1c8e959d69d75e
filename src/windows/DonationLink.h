#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace lumetra {

// One place a donation can go: a button in the support window.
struct DonationLink {
    QString id;          // the service's short name in lower case
    QString displayName; // the service's own spelling of its name, not translated
    QString symbolName;  // the button's symbol
    QUrl url;            // opened in the default browser

    // The links in display order: a tip jar first, then a card payment page.
    static const QList<DonationLink>& all();
};

} // namespace lumetra

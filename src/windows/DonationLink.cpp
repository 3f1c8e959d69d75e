#include "windows/DonationLink.h"

namespace lumetra {

const QList<DonationLink>& DonationLink::all() {
    // Deployment data: the project's pages on the two services. Change them here only.
    static const QList<DonationLink> links{
        {QStringLiteral("kofi"), QStringLiteral("Ko-fi"), QStringLiteral("cup.and.saucer.fill"),
         QUrl(QStringLiteral("https://ko-fi.com/lumetra"))},
        {QStringLiteral("stripe"), QStringLiteral("Stripe"), QStringLiteral("creditcard.fill"),
         QUrl(QStringLiteral("https://donate.stripe.com/lumetra"))},
    };
    return links;
}

} // namespace lumetra

#include "dashboard/NetworkCardView.h"

#include "dashboard/DashboardCard.h"
#include "dashboard/MetricRow.h"
#include "dashboard/SectionHeader.h"
#include "format/ValueFormatters.h"

#include <QCoreApplication>

namespace lumetra {

namespace {

struct Pieces {
    SectionHeader header;
    MetricRow download;
    MetricRow upload;
};

Pieces pieces(double download, double upload, const DashboardTheme& theme) {
    return {SectionHeader(QCoreApplication::translate("NetworkCardView", "Network"),
                          QStringLiteral("network")),
            MetricRow(QCoreApplication::translate("NetworkCardView", "Download"),
                      NetworkCardView::downloadText(download), theme.primary()),
            MetricRow(QCoreApplication::translate("NetworkCardView", "Upload"),
                      NetworkCardView::uploadText(upload), theme.primary())};
}

} // namespace

QString NetworkCardView::downloadText(double bytesPerSecond) {
    return QStringLiteral("↓ ") + formatRate(bytesPerSecond);
}

QString NetworkCardView::uploadText(double bytesPerSecond) {
    return QStringLiteral("↑ ") + formatRate(bytesPerSecond);
}

double NetworkCardView::heightFor(double width, const DashboardTheme& theme) const {
    const Pieces all = pieces(download_, upload_, theme);
    return DashboardCard({&all.header, &all.download, &all.upload}).heightFor(width, theme);
}

void NetworkCardView::paint(QPainter& painter, const QRectF& rect,
                            const DashboardTheme& theme) const {
    const Pieces all = pieces(download_, upload_, theme);
    DashboardCard({&all.header, &all.download, &all.upload}).paint(painter, rect, theme);
}

} // namespace lumetra

#include "format/TopApplicationText.h"

#include "format/ValueFormatters.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace lumetra {

QString processCountText(int count) {
    // English has no catalogue of its own to pick the singular from.
    if (count == 1)
        return QCoreApplication::translate("TopApplications", "1 process");
    return QCoreApplication::translate("TopApplications", "%n processes", nullptr, count);
}

QString coreShareText(double percentOfOneCore) {
    QString text;
    appendInteger(text, std::llround(std::max(0.0, percentOfOneCore)));
    return text + QStringLiteral(" %");
}

QString cpuShareTooltip(double percentOfOneCore, int logicalCpuCount) {
    const double machine = percentOfOneCore / double(std::max(1, logicalCpuCount));
    return QCoreApplication::translate("TopApplications", "%1 of one core · %2 of the machine")
        .arg(coreShareText(percentOfOneCore), coreShareText(machine));
}

QString topApplicationLine(const TopApplication& application, bool cpuValid) {
    QString line = application.name;
    if (application.isApplication())
        line += QStringLiteral(" · ") + processCountText(application.processCount());
    line += QStringLiteral(": ");
    if (cpuValid)
        line += QCoreApplication::translate("TopApplications", "%1 CPU")
                    .arg(coreShareText(application.cpuPercent)) +
                QStringLiteral(", ");
    return line + formatBytes(application.residentBytes);
}

} // namespace lumetra

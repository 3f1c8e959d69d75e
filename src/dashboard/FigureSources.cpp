#include "dashboard/FigureSources.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace lumetra {

QString temperatureSourcesText(const QStringList& sources) {
    // Chips in the order their first sensor comes, sensors in the order given.
    std::vector<std::pair<QString, QStringList>> chips;
    for (const QString& source : sources) {
        const qsizetype slash = source.indexOf(u'/');
        const QString chip = slash < 0 ? source : source.left(slash);
        const QString sensor = slash < 0 ? QString() : source.mid(slash + 1);
        auto it = std::find_if(chips.begin(), chips.end(),
                               [&chip](const auto& entry) { return entry.first == chip; });
        if (it == chips.end()) {
            chips.emplace_back(chip, QStringList());
            it = std::prev(chips.end());
        }
        if (!sensor.isEmpty())
            it->second.append(sensor);
    }
    QStringList lines;
    for (const auto& [chip, sensors] : chips)
        lines.append(sensors.isEmpty()
                         ? chip
                         : chip + QStringLiteral(" · ") + sensors.join(QStringLiteral(", ")));
    return lines.join(u'\n');
}

QString networkInterfacesText(const QStringList& interfaces) {
    if (interfaces.isEmpty())
        return {};
    return QCoreApplication::translate("NetworkCardView", "Counted: %1")
        .arg(interfaces.join(QStringLiteral(", ")));
}

} // namespace lumetra

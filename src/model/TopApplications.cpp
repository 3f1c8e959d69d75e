#include "model/TopApplications.h"

#include <algorithm>

namespace lumetra {

QList<TopApplication> TopApplications::top(TopApplicationOrder order, int count) const {
    QList<TopApplication> sorted = groups;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [order](const TopApplication& a, const TopApplication& b) {
                         if (order == TopApplicationOrder::cpu && a.cpuPercent != b.cpuPercent)
                             return a.cpuPercent > b.cpuPercent;
                         if (a.residentBytes != b.residentBytes)
                             return a.residentBytes > b.residentBytes;
                         return a.name.localeAwareCompare(b.name) < 0;
                     });
    if (count >= 0 && sorted.size() > count)
        sorted.resize(count);
    return sorted;
}

} // namespace lumetra

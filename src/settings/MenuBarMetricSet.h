#pragma once

#include "settings/MenuBarMetric.h"

#include <QList>

#include <bit>
#include <cstdint>
#include <initializer_list>

namespace lumetra {

// The set of metrics the user has switched on. The cases fit a bit mask, which keeps
// equality cheap and iteration in the metrics' declaration order, so the stored array is
// always written the same way.
class MenuBarMetricSet {
public:
    constexpr MenuBarMetricSet() = default;
    constexpr MenuBarMetricSet(std::initializer_list<MenuBarMetric> metrics) {
        for (MenuBarMetric metric : metrics)
            insert(metric);
    }

    constexpr bool contains(MenuBarMetric metric) const { return (bits_ & bit(metric)) != 0; }
    constexpr void insert(MenuBarMetric metric) { bits_ |= bit(metric); }
    constexpr void remove(MenuBarMetric metric) { bits_ &= std::uint16_t(~bit(metric)); }
    constexpr bool isEmpty() const { return bits_ == 0; }
    constexpr int size() const { return std::popcount(bits_); }

    // The members in declaration order.
    QList<MenuBarMetric> values() const {
        QList<MenuBarMetric> members;
        for (MenuBarMetric metric : allCases<MenuBarMetric>()) {
            if (contains(metric))
                members.append(metric);
        }
        return members;
    }

    friend constexpr bool operator==(MenuBarMetricSet, MenuBarMetricSet) = default;

private:
    static constexpr std::uint16_t bit(MenuBarMetric metric) {
        return std::uint16_t(1u << unsigned(metric));
    }
    static_assert(allCases<MenuBarMetric>().size() <= 16, "every metric has a bit");
    std::uint16_t bits_ = 0;
};

} // namespace lumetra

#pragma once

#include "model/MetricHistory.h"

#include <QMetaType>

namespace lumetra {

// The recent levels of every metric that keeps one, for graphs. A metric's row in the
// catalogue points at its member, so adding a graphed metric adds one member here.
struct MetricHistories {
    MetricHistory cpu;
    MetricHistory memory;
    MetricHistory swap;

    bool operator==(const MetricHistories&) const = default;
};

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::MetricHistories)

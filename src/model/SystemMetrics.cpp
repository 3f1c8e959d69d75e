#include "model/SystemMetrics.h"

namespace lumetra {

const SystemMetrics& SystemMetrics::empty() {
    static const SystemMetrics record{};
    return record;
}

} // namespace lumetra

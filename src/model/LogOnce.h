#pragma once

#include <atomic>

namespace lumetra {

// The gate in front of a failure's log line: open at the first failure, shut until the source
// recovers, so a file that stays unreadable is logged once and not on every tick.
//
//     if (!ok) { if (statFailure_.failed()) qCCritical(...); } else statFailure_.recovered();
class LogOnce {
public:
    // True at the first failure since creation or since the last recovery: log now.
    bool failed() { return !reported_.exchange(true, std::memory_order_relaxed); }
    // The source works again; its next failure is logged.
    void recovered() {
        if (reported_.load(std::memory_order_relaxed))
            reported_.store(false, std::memory_order_relaxed);
    }

private:
    std::atomic<bool> reported_{false};
};

} // namespace lumetra

#pragma once

#include "updates/UpdateCheckError.h"
#include "updates/UpdateManifest.h"

#include <functional>
#include <variant>

namespace lumetra {

using UpdateCheckResult = std::variant<UpdateManifest, UpdateCheckError>;

// A source of the update manifest; the policy runs against a stub in tests.
class UpdateChecking {
public:
    using Completion = std::function<void(const UpdateCheckResult&)>;

    virtual ~UpdateChecking() = default;

    // Starts one fetch and returns at once. `completion` runs exactly once, later, on the
    // thread that called, with the manifest or the reason there is none. It never retries.
    virtual void fetchLatestManifest(Completion completion) = 0;
};

} // namespace lumetra

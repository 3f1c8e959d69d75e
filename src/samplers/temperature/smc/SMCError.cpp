#include "samplers/temperature/smc/SMCError.h"

namespace lumetra {

namespace {

std::string describe(SMCError::Kind kind, std::int64_t code) {
    switch (kind) {
    case SMCError::Kind::failedToOpen:
        return "failedToOpen(" + std::to_string(code) + ")";
    case SMCError::Kind::callFailed:
        return "callFailed(" + std::to_string(code) + ")";
    case SMCError::Kind::serviceNotFound:
        return "serviceNotFound";
    case SMCError::Kind::keyNotFound:
        return "keyNotFound";
    }
    return "callFailed(" + std::to_string(code) + ")";
}

} // namespace

SMCError::SMCError(Kind kind, std::int64_t code)
    : kind_(kind), code_(code), text_(describe(kind, code)) {}

std::string SMCError::description() const {
    return text_;
}

} // namespace lumetra

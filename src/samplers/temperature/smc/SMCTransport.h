#pragma once

#include "samplers/temperature/smc/SMCCallRecord.h"

namespace lumetra {

// One open connection to a controller that answers SMC call records: the client fills the
// input, the transport fills the output. The return value is the transport's own status
// (0 or a negative errno); the client judges a call by the output's result byte alone.
class SMCTransport {
public:
    virtual ~SMCTransport() = default;
    virtual int call(const SMCCallRecord& input, SMCCallRecord& output) = 0;
};

} // namespace lumetra

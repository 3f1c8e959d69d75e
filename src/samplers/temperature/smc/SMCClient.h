#pragma once

#include "samplers/temperature/smc/SMCError.h"
#include "samplers/temperature/smc/SMCKeyReading.h"
#include "samplers/temperature/smc/SMCTransport.h"

#include <functional>
#include <memory>
#include <optional>

namespace lumetra {

// A minimal reader of the System Management Controller's keys: two calls per key (the key's
// information, then its bytes) and the decoding of the two types temperature sensors use.
// It knows nothing of temperatures or key lists, and logs nothing: failures are thrown.
class SMCClient final : public SMCKeyReading {
public:
    // Opens the transport once; throws serviceNotFound or failedToOpen from the opener.
    using TransportOpener = std::function<std::unique_ptr<SMCTransport>()>;
    explicit SMCClient(const TransportOpener& open);
    explicit SMCClient(std::unique_ptr<SMCTransport> transport);

    // Throws keyNotFound (result byte 132 on either call) or callFailed (any other non-zero
    // result, or a data size of 0).
    SMCKeyValue readKey(std::string_view key) override;

    // "flt ": four bytes, a little-endian IEEE-754 single. "sp78": two bytes, a big-endian
    // signed 16-bit integer over 256. Anything else, or too few bytes: none.
    static std::optional<double> decodeValue(std::string_view dataType,
                                             std::span<const std::uint8_t> bytes);

private:
    std::unique_ptr<SMCTransport> transport_;
};

} // namespace lumetra

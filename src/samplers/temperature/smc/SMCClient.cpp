#include "samplers/temperature/smc/SMCClient.h"

#include <bit>
#include <cstring>

namespace lumetra {

namespace {

void checkResult(const SMCCallRecord& output) {
    const std::uint8_t result = output.result();
    if (result == SMCCallRecord::kResultKeyNotFound)
        throw SMCError::keyNotFound();
    if (result != SMCCallRecord::kResultSuccess)
        throw SMCError::callFailed(result);
}

} // namespace

SMCClient::SMCClient(const TransportOpener& open) : transport_(open()) {
    if (!transport_)
        throw SMCError::serviceNotFound();
}

SMCClient::SMCClient(std::unique_ptr<SMCTransport> transport) : transport_(std::move(transport)) {
    if (!transport_)
        throw SMCError::serviceNotFound();
}

SMCKeyValue SMCClient::readKey(std::string_view key) {
    const std::uint32_t code = encodeSMCKey(key);

    // The transport's own return code is not examined: a failure that leaves the result byte
    // 0 reads as a zeroed record, which the data-size check below reports as callFailed(0).
    SMCCallRecord infoInput;
    infoInput.setKey(code);
    infoInput.setCommand(SMCCallRecord::kCommandReadKeyInfo);
    SMCCallRecord info;
    transport_->call(infoInput, info);
    checkResult(info);
    const std::uint32_t dataSize = info.dataSize();
    if (dataSize == 0)
        throw SMCError::callFailed(0);
    const std::uint32_t dataType = info.dataType();

    SMCCallRecord readInput;
    readInput.setKey(code);
    readInput.setDataSize(dataSize);
    readInput.setCommand(SMCCallRecord::kCommandReadBytes);
    SMCCallRecord bytes;
    transport_->call(readInput, bytes);
    checkResult(bytes);

    SMCKeyValue value;
    value.dataType = smcFourCharText(dataType);
    value.assign(bytes.data().first(std::min<std::size_t>(dataSize, SMCKeyValue::kMaxBytes)));
    return value;
}

std::optional<double> SMCClient::decodeValue(std::string_view dataType,
                                             std::span<const std::uint8_t> bytes) {
    if (dataType == "flt ") {
        if (bytes.size() < 4)
            return std::nullopt;
        const std::uint32_t raw = std::uint32_t(bytes[0]) | std::uint32_t(bytes[1]) << 8 |
                                  std::uint32_t(bytes[2]) << 16 | std::uint32_t(bytes[3]) << 24;
        return static_cast<double>(std::bit_cast<float>(raw));
    }
    if (dataType == "sp78") {
        if (bytes.size() < 2)
            return std::nullopt;
        const auto raw = static_cast<std::int16_t>(std::uint16_t(bytes[0]) << 8 | bytes[1]);
        return raw / 256.0;
    }
    return std::nullopt;
}

} // namespace lumetra

#include "samplers/temperature/smc/SMCSimulator.h"

#include <algorithm>
#include <bit>

namespace lumetra {

namespace {

// The controller's answer to a command it does not implement.
constexpr std::uint8_t kResultBadCommand = 0x82;

} // namespace

void SMCSimulator::setKey(const std::string& key, const std::string& dataType,
                          std::vector<std::uint8_t> bytes) {
    Key entry;
    entry.dataType = encodeSMCKey(dataType);
    entry.dataSize = static_cast<std::uint32_t>(bytes.size());
    entry.bytes = std::move(bytes);
    keys_[key] = std::move(entry);
}

void SMCSimulator::setFloat(const std::string& key, float value) {
    const auto raw = std::bit_cast<std::uint32_t>(value);
    setKey(key, "flt ",
           {static_cast<std::uint8_t>(raw), static_cast<std::uint8_t>(raw >> 8),
            static_cast<std::uint8_t>(raw >> 16), static_cast<std::uint8_t>(raw >> 24)});
}

int SMCSimulator::call(const SMCCallRecord& input, SMCCallRecord& output) {
    calls_.push_back(input);
    output = SMCCallRecord();
    output.setKey(input.key());

    const Key* entry = nullptr;
    for (const auto& [name, key] : keys_) {
        if (encodeSMCKey(name) == input.key()) {
            entry = &key;
            break;
        }
    }
    if (!entry) {
        output.setResult(SMCCallRecord::kResultKeyNotFound);
        return 0;
    }
    switch (input.command()) {
    case SMCCallRecord::kCommandReadKeyInfo:
        output.setResult(entry->infoResult);
        if (entry->infoResult == 0) {
            output.setDataSize(entry->dataSize);
            output.setDataType(entry->dataType);
        }
        return 0;
    case SMCCallRecord::kCommandReadBytes: {
        output.setResult(entry->readResult);
        if (entry->readResult == 0) {
            const std::size_t count = std::min(
                {entry->bytes.size(), std::size_t(input.dataSize()), SMCCallRecord::kBytesSize});
            std::copy_n(entry->bytes.begin(), count, output.data().begin());
        }
        return 0;
    }
    default:
        output.setResult(kResultBadCommand);
        return 0;
    }
}

} // namespace lumetra

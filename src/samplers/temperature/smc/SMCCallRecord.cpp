#include "samplers/temperature/smc/SMCCallRecord.h"

namespace lumetra {

std::uint32_t encodeSMCKey(std::string_view key) {
    std::uint32_t value = 0;
    for (const char c : key)
        value = value * 256 + static_cast<std::uint8_t>(c);
    return value;
}

std::string smcFourCharText(std::uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<std::uint8_t>(code >> shift);
        if (byte >= 32 && byte <= 126)
            text.push_back(static_cast<char>(byte));
    }
    return text;
}

} // namespace lumetra

#include "samplers/network/NetworkInterfaceState.h"

#include "samplers/kernel/TextScan.h"

#include <array>
#include <charconv>

namespace lumetra {

std::optional<std::uint32_t> NetworkInterfaceState::parseFlags(std::string_view text) {
    text = textscan::trim(text);
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text.remove_prefix(2);
    std::uint32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value, 16);
    if (text.empty() || ec != std::errc{} || ptr != end)
        return std::nullopt;
    return value;
}

std::optional<bool> NetworkInterfaceState::parseRunning(std::string_view text) {
    text = textscan::trim(text);
    if (text == "up" || text == "unknown")
        return true;
    // The other states of RFC 2863 that the kernel reports.
    static constexpr std::array<std::string_view, 5> notRunning = {
        "down", "dormant", "lowerlayerdown", "notpresent", "testing"};
    for (const std::string_view state : notRunning) {
        if (text == state)
            return false;
    }
    return std::nullopt;
}

std::optional<std::uint64_t> NetworkInterfaceState::parseCounter(std::string_view text) {
    return textscan::parseUnsigned(textscan::trim(text));
}

} // namespace lumetra

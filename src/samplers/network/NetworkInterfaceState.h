#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumetra {

// What /sys/class/net/<interface> says about one interface, and whether its bytes count.
struct NetworkInterfaceState {
    static constexpr std::uint32_t kUp = 0x1;       // IFF_UP
    static constexpr std::uint32_t kLoopback = 0x8; // IFF_LOOPBACK

    std::uint32_t flags = 0;
    bool running = false;

    bool isUp() const { return (flags & kUp) != 0; }
    bool isLoopback() const { return (flags & kLoopback) != 0; }
    // Up and running and not a loopback: the same rule for every kind of link.
    bool isCounted() const { return isUp() && running && !isLoopback(); }

    // The `flags` attribute: hexadecimal text such as "0x1003". Nothing for garbage.
    static std::optional<std::uint32_t> parseFlags(std::string_view text);
    // The `operstate` attribute. sysfs never shows IFF_RUNNING in `flags`; the kernel reports
    // a link as running exactly when its operstate is "up", or "unknown" for drivers that do
    // not track carrier (tunnels, some virtual devices). Nothing for an empty or garbage text.
    static std::optional<bool> parseRunning(std::string_view text);
    // A byte counter such as `statistics/rx_bytes`: a decimal 64-bit number.
    static std::optional<std::uint64_t> parseCounter(std::string_view text);
};

} // namespace lumetra

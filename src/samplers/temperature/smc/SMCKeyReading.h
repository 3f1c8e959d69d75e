#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace lumetra {

// What one key read returns: the data-type text (up to four characters) and at most 32
// data bytes, held inline so a reading allocates nothing.
struct SMCKeyValue {
    static constexpr std::size_t kMaxBytes = 32;

    std::string dataType;
    std::array<std::uint8_t, kMaxBytes> storage{};
    std::size_t size = 0;

    std::span<const std::uint8_t> bytes() const { return {storage.data(), size}; }
    void assign(std::span<const std::uint8_t> source) {
        size = std::min(source.size(), kMaxBytes);
        std::copy_n(source.begin(), size, storage.begin());
    }
};

// A source of SMC-style key reads: key text in; data type and bytes out, or an SMCError
// (keyNotFound for a key the source does not know, callFailed when the read fails).
// Implemented by the SMC client; tests put a simulated controller behind it.
class SMCKeyReading {
public:
    virtual ~SMCKeyReading() = default;
    virtual SMCKeyValue readKey(std::string_view key) = 0;
};

} // namespace lumetra

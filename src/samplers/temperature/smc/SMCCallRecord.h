#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace lumetra {

// The 80-byte record exchanged with the controller on every call, little-endian, every byte
// zero unless set. Fields are read and written at fixed offsets rather than through a struct,
// so the layout cannot depend on the compiler's padding or the host's byte order.
class SMCCallRecord {
public:
    static constexpr std::size_t kSize = 80;

    // Offsets of the fields this program uses; the rest stay zero.
    static constexpr std::size_t kKeyOffset = 0;       // u32, the encoded key
    static constexpr std::size_t kDataSizeOffset = 28; // u32, key info: data size
    static constexpr std::size_t kDataTypeOffset = 32; // u32, key info: four-character code
    static constexpr std::size_t kAttributesOffset = 36;
    static constexpr std::size_t kResultOffset = 40; // u8, 0 success, 132 key not found
    static constexpr std::size_t kStatusOffset = 41;
    static constexpr std::size_t kCommandOffset = 42; // u8, 9 key info, 5 read bytes
    static constexpr std::size_t kData32Offset = 44;
    static constexpr std::size_t kBytesOffset = 48; // 32 data bytes
    static constexpr std::size_t kBytesSize = 32;

    static constexpr std::uint8_t kCommandReadKeyInfo = 9;
    static constexpr std::uint8_t kCommandReadBytes = 5;
    static constexpr std::uint8_t kResultSuccess = 0;
    static constexpr std::uint8_t kResultKeyNotFound = 132;

    std::uint32_t key() const { return read32(kKeyOffset); }
    void setKey(std::uint32_t key) { write32(kKeyOffset, key); }
    std::uint32_t dataSize() const { return read32(kDataSizeOffset); }
    void setDataSize(std::uint32_t size) { write32(kDataSizeOffset, size); }
    std::uint32_t dataType() const { return read32(kDataTypeOffset); }
    void setDataType(std::uint32_t code) { write32(kDataTypeOffset, code); }
    std::uint8_t result() const { return bytes_[kResultOffset]; }
    void setResult(std::uint8_t result) { bytes_[kResultOffset] = result; }
    std::uint8_t command() const { return bytes_[kCommandOffset]; }
    void setCommand(std::uint8_t command) { bytes_[kCommandOffset] = command; }

    std::span<const std::uint8_t, kBytesSize> data() const {
        return std::span<const std::uint8_t, kBytesSize>(bytes_.data() + kBytesOffset, kBytesSize);
    }
    std::span<std::uint8_t, kBytesSize> data() {
        return std::span<std::uint8_t, kBytesSize>(bytes_.data() + kBytesOffset, kBytesSize);
    }

    const std::array<std::uint8_t, kSize>& bytes() const { return bytes_; }
    std::array<std::uint8_t, kSize>& bytes() { return bytes_; }

private:
    std::uint32_t read32(std::size_t offset) const {
        return std::uint32_t(bytes_[offset]) | std::uint32_t(bytes_[offset + 1]) << 8 |
               std::uint32_t(bytes_[offset + 2]) << 16 | std::uint32_t(bytes_[offset + 3]) << 24;
    }
    void write32(std::size_t offset, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i)
            bytes_[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }

    std::array<std::uint8_t, kSize> bytes_{};
};

// The key's bytes folded first to last, value × 256 + byte: "Tp01" → 0x54703031; "" → 0.
std::uint32_t encodeSMCKey(std::string_view key);

// A four-character code as text, most significant byte first, keeping only printable bytes
// (32 to 126): "flt " keeps its space, a code holding a zero byte gives fewer characters.
std::string smcFourCharText(std::uint32_t code);

} // namespace lumetra

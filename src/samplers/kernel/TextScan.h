#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace lumetra::textscan {

// Allocation-free helpers for the line-oriented text of /proc and /sys.

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

inline std::string_view trim(std::string_view text) {
    while (!text.empty() && (isBlank(text.front()) || text.front() == '\n' || text.front() == '\r'))
        text.remove_prefix(1);
    while (!text.empty() && (isBlank(text.back()) || text.back() == '\n' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

// Takes the next line (without its newline) off the front of `text`.
inline std::string_view nextLine(std::string_view& text) {
    const auto end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

// Takes the next blank-separated field off the front of `text`; empty at the end.
inline std::string_view nextField(std::string_view& text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    std::size_t end = 0;
    while (end < text.size() && !isBlank(text[end]))
        ++end;
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end);
    return field;
}

// A whole field as an unsigned 64-bit number; nothing for garbage, a sign or an overflow.
inline std::optional<std::uint64_t> parseUnsigned(std::string_view field) {
    std::uint64_t value = 0;
    const auto* end = field.data() + field.size();
    const auto [ptr, ec] = std::from_chars(field.data(), end, value);
    if (ec != std::errc{} || ptr != end || field.empty())
        return std::nullopt;
    return value;
}

inline std::optional<std::int64_t> parseSigned(std::string_view field) {
    std::int64_t value = 0;
    const auto* end = field.data() + field.size();
    const auto [ptr, ec] = std::from_chars(field.data(), end, value);
    if (ec != std::errc{} || ptr != end || field.empty())
        return std::nullopt;
    return value;
}

inline std::optional<double> parseDouble(std::string_view field) {
    double value = 0;
    const auto* end = field.data() + field.size();
    const auto [ptr, ec] = std::from_chars(field.data(), end, value);
    if (ec != std::errc{} || ptr != end || field.empty())
        return std::nullopt;
    return value;
}

// a + b without wrapping: kernel counters summed from garbage must not wrap into small values.
inline std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t sum = a + b;
    return sum < a ? UINT64_MAX : sum;
}

inline std::uint64_t saturatingMultiply(std::uint64_t a, std::uint64_t b) {
    std::uint64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? UINT64_MAX : product;
}

} // namespace lumetra::textscan

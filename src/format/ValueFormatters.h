#pragma once

#include <QString>

#include <cstdint>
#include <span>

namespace lumetra {

// The value formatters shared by the menu bar, the dashboard and the terminal mode.

// "47%": clamped to 0..100, rounded half away from zero.
QString wholePercentText(double percent);

// Memory style: multiples of 1024 ("KB", "MB", "GB"), one fractional digit, zero as "0 bytes".
QString formatBytes(std::uint64_t bytes);

// formatBytes(used) + " / " + formatBytes(total).
QString formatUsedOverTotal(std::uint64_t used, std::uint64_t total);

// Decimal units: "512 B/s", "1.5 KB/s", "15 KB/s"; negative and NaN give "0 B/s".
QString formatRate(double bytesPerSecond);

// One glyph ▁…█ per value for the last `count` values, oldest first.
QString sparkline(std::span<const double> values, int count);

// `count` segments, ▓ filled and ░ empty, for a 0..100 percentage.
QString levelBar(int count, double percentage);

} // namespace lumetra

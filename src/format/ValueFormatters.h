#pragma once

#include "settings/TemperatureDisplayFormat.h"

#include <QString>

#include <cstdint>
#include <span>

namespace lumetra {

// The value formatters shared by the menu bar, the dashboard and the terminal mode. Each has
// an append form that writes into a caller's string, so a whole label is built in one buffer
// (the label is rebuilt on every sample), and a returning form for convenience.

// "47%": clamped to 0..100, rounded half away from zero.
QString wholePercentText(double percent);
void appendWholePercent(QString& out, double percent);

// Memory style: multiples of 1024 ("KB", "MB", "GB"), one fractional digit, zero as "0 bytes".
QString formatBytes(std::uint64_t bytes);
void appendBytes(QString& out, std::uint64_t bytes);

// formatBytes(used) + " / " + formatBytes(total).
QString formatUsedOverTotal(std::uint64_t used, std::uint64_t total);
void appendUsedOverTotal(QString& out, std::uint64_t used, std::uint64_t total);

// Decimal units: "512 B/s", "1.5 KB/s", "15 KB/s"; negative and NaN give "0 B/s".
QString formatRate(double bytesPerSecond);
void appendRate(QString& out, double bytesPerSecond);

// "52°", "52°C", "CPU 52°C" or "Temp 52°C": rounded half away from zero, not clamped.
QString temperatureText(double celsius, TemperatureDisplayFormat format);

// One glyph ▁…█ per value for the last `count` values, oldest first.
QString sparkline(std::span<const double> values, int count);

// `count` segments, ▓ filled and ░ empty, for a 0..100 percentage.
QString levelBar(int count, double percentage);

// Appends a whole number, without going through a temporary string.
void appendInteger(QString& out, long long value);

} // namespace lumetra

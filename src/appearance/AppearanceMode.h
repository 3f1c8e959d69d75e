#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>
#include <string_view>

namespace lumetra {

// How the popover and settings windows draw their background: four fixed presets and one
// configuration the user edits.
enum class AppearanceMode { solid, subtle, translucent, glass, custom };

// Picker order.
inline constexpr std::array<AppearanceMode, 5> kAllAppearanceModes{
    AppearanceMode::solid, AppearanceMode::subtle, AppearanceMode::translucent,
    AppearanceMode::glass, AppearanceMode::custom};

std::string_view rawValue(AppearanceMode mode);

// Accepts exactly the raw values, case-sensitively.
std::optional<AppearanceMode> appearanceModeFromRaw(QStringView raw);

// Localised with the English texts as keys.
QString title(AppearanceMode mode);
QString description(AppearanceMode mode);

} // namespace lumetra

#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>
#include <string_view>

namespace lumetra {

// The material behind the window content; on Linux it picks the tint of the background.
enum class VisualEffectMaterial { automatic, popover, hud, sidebar, menu };

// Picker order.
inline constexpr std::array<VisualEffectMaterial, 5> kAllVisualEffectMaterials{
    VisualEffectMaterial::automatic, VisualEffectMaterial::popover, VisualEffectMaterial::hud,
    VisualEffectMaterial::sidebar, VisualEffectMaterial::menu};

std::string_view rawValue(VisualEffectMaterial material);

// Accepts exactly the raw values, case-sensitively ("hud", never "Hud").
std::optional<VisualEffectMaterial> visualEffectMaterialFromRaw(QStringView raw);

// Localised, except "HUD", which reads the same in every language.
QString title(VisualEffectMaterial material);

} // namespace lumetra

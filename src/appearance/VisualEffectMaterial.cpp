#include "appearance/VisualEffectMaterial.h"

namespace lumetra {

QString title(VisualEffectMaterial material) {
    return material == VisualEffectMaterial::hud ? QStringLiteral("HUD") : displayName(material);
}

} // namespace lumetra

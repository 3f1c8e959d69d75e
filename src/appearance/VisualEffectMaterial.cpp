#include "appearance/VisualEffectMaterial.h"

#include <QCoreApplication>
#include <QLatin1StringView>

namespace lumetra {

namespace {

struct MaterialRow {
    VisualEffectMaterial material;
    std::string_view raw;
    const char* title;
    bool translated;
};

constexpr std::array<MaterialRow, 5> kMaterialRows{{
    {VisualEffectMaterial::automatic, "automatic",
     QT_TRANSLATE_NOOP("VisualEffectMaterial", "Automatic"), true},
    {VisualEffectMaterial::popover, "popover", QT_TRANSLATE_NOOP("VisualEffectMaterial", "Popover"),
     true},
    {VisualEffectMaterial::hud, "hud", "HUD", false},
    {VisualEffectMaterial::sidebar, "sidebar", QT_TRANSLATE_NOOP("VisualEffectMaterial", "Sidebar"),
     true},
    {VisualEffectMaterial::menu, "menu", QT_TRANSLATE_NOOP("VisualEffectMaterial", "Menu"), true},
}};

const MaterialRow& row(VisualEffectMaterial material) {
    for (const MaterialRow& candidate : kMaterialRows) {
        if (candidate.material == material)
            return candidate;
    }
    return kMaterialRows[0];
}

} // namespace

std::string_view rawValue(VisualEffectMaterial material) {
    return row(material).raw;
}

std::optional<VisualEffectMaterial> visualEffectMaterialFromRaw(QStringView raw) {
    for (const MaterialRow& candidate : kMaterialRows) {
        if (QLatin1StringView(candidate.raw.data(), qsizetype(candidate.raw.size())) == raw)
            return candidate.material;
    }
    return std::nullopt;
}

QString title(VisualEffectMaterial material) {
    const MaterialRow& found = row(material);
    return found.translated ? QCoreApplication::translate("VisualEffectMaterial", found.title)
                            : QString::fromLatin1(found.title);
}

} // namespace lumetra

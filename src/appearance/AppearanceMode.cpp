#include "appearance/AppearanceMode.h"

#include <QCoreApplication>
#include <QLatin1StringView>

namespace lumetra {

namespace {

struct ModeRow {
    AppearanceMode mode;
    std::string_view raw;
    const char* title;
    const char* description;
};

constexpr std::array<ModeRow, 5> kModeRows{{
    {AppearanceMode::solid, "solid", QT_TRANSLATE_NOOP("AppearanceMode", "Solid"),
     QT_TRANSLATE_NOOP("AppearanceMode", "Nearly opaque background for maximum legibility.")},
    {AppearanceMode::subtle, "subtle", QT_TRANSLATE_NOOP("AppearanceMode", "Subtle"),
     QT_TRANSLATE_NOOP("AppearanceMode", "A light touch of transparency and blur.")},
    {AppearanceMode::translucent, "translucent", QT_TRANSLATE_NOOP("AppearanceMode", "Translucent"),
     QT_TRANSLATE_NOOP("AppearanceMode", "Noticeably see-through with a medium blur.")},
    {AppearanceMode::glass, "glass", QT_TRANSLATE_NOOP("AppearanceMode", "Glass"),
     QT_TRANSLATE_NOOP("AppearanceMode", "Maximum glass effect, macOS-style vibrancy.")},
    {AppearanceMode::custom, "custom", QT_TRANSLATE_NOOP("AppearanceMode", "Custom"),
     QT_TRANSLATE_NOOP("AppearanceMode", "Full manual control over opacity and blur.")},
}};

const ModeRow& row(AppearanceMode mode) {
    for (const ModeRow& candidate : kModeRows) {
        if (candidate.mode == mode)
            return candidate;
    }
    return kModeRows[0];
}

} // namespace

std::string_view rawValue(AppearanceMode mode) {
    return row(mode).raw;
}

std::optional<AppearanceMode> appearanceModeFromRaw(QStringView raw) {
    for (const ModeRow& candidate : kModeRows) {
        if (QLatin1StringView(candidate.raw.data(), qsizetype(candidate.raw.size())) == raw)
            return candidate.mode;
    }
    return std::nullopt;
}

QString title(AppearanceMode mode) {
    return QCoreApplication::translate("AppearanceMode", row(mode).title);
}

QString description(AppearanceMode mode) {
    return QCoreApplication::translate("AppearanceMode", row(mode).description);
}

} // namespace lumetra

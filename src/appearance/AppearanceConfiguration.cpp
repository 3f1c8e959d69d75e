#include "appearance/AppearanceConfiguration.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace lumetra {

namespace {

QByteArray number(double value) {
    return QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
}

QByteArray raw(std::string_view text) {
    return QByteArray(text.data(), qsizetype(text.size()));
}

std::optional<double> finiteNumber(const QJsonObject& object, QLatin1StringView key) {
    const QJsonValue value = object.value(key);
    if (!value.isDouble() || !std::isfinite(value.toDouble()))
        return std::nullopt;
    return value.toDouble();
}

} // namespace

AppearanceConfiguration AppearanceConfiguration::preset(AppearanceMode mode) {
    using Material = VisualEffectMaterial;
    switch (mode) {
    case AppearanceMode::solid:
        return {mode, 0.98, 0.94, 0, Material::sidebar, false};
    case AppearanceMode::subtle:
        return {mode, 0.93, 0.55, 25, Material::sidebar, true};
    case AppearanceMode::translucent:
        return {mode, 0.82, 0.32, 60, Material::popover, true};
    case AppearanceMode::glass:
        return {mode, 0.68, 0.12, 90, Material::hud, true};
    case AppearanceMode::custom:
        break;
    }
    return {};
}

std::optional<QByteArray> AppearanceConfiguration::toJson() const {
    if (!std::isfinite(backgroundOpacity) || !std::isfinite(overlayOpacity) ||
        !std::isfinite(blurIntensity))
        return std::nullopt;
    QByteArray json;
    json.reserve(160);
    json += "{\"mode\":\"" + raw(rawValue(mode)) +
            "\",\"backgroundOpacity\":" + number(backgroundOpacity) +
            ",\"overlayOpacity\":" + number(overlayOpacity) +
            ",\"blurIntensity\":" + number(blurIntensity) + ",\"material\":\"" +
            raw(rawValue(material)) +
            "\",\"vibrancyEnabled\":" + (vibrancyEnabled ? "true" : "false") + "}";
    return json;
}

std::optional<AppearanceConfiguration> AppearanceConfiguration::fromJson(QByteArrayView json) {
    const QJsonDocument document = QJsonDocument::fromJson(json.toByteArray());
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();

    const QJsonValue modeValue = object.value(QLatin1StringView("mode"));
    const QJsonValue materialValue = object.value(QLatin1StringView("material"));
    const QJsonValue vibrancy = object.value(QLatin1StringView("vibrancyEnabled"));
    if (!modeValue.isString() || !materialValue.isString() || !vibrancy.isBool())
        return std::nullopt;
    const auto mode = fromRaw<AppearanceMode>(QStringView(modeValue.toString()));
    const auto material = fromRaw<VisualEffectMaterial>(QStringView(materialValue.toString()));
    const auto background = finiteNumber(object, QLatin1StringView("backgroundOpacity"));
    const auto overlay = finiteNumber(object, QLatin1StringView("overlayOpacity"));
    const auto blur = finiteNumber(object, QLatin1StringView("blurIntensity"));
    if (!mode || !material || !background || !overlay || !blur)
        return std::nullopt;
    return AppearanceConfiguration{*mode, *background, *overlay,
                                   *blur, *material,   vibrancy.toBool()};
}

AppearanceConfiguration
AppearanceConfiguration::resolve(AppearanceMode selected,
                                 const std::optional<AppearanceConfiguration>& storedCustom,
                                 bool reduceTransparency, bool increaseContrast) {
    // A stored custom configuration is taken as stored, its own mode field included.
    const bool fromStore = selected == AppearanceMode::custom && storedCustom.has_value();
    AppearanceConfiguration effective = fromStore ? *storedCustom : preset(selected);
    if (!fromStore)
        effective.mode = selected;
    if (reduceTransparency) {
        effective.backgroundOpacity = 1.0;
        effective.overlayOpacity = 1.0;
        effective.vibrancyEnabled = false;
    }
    if (increaseContrast)
        effective.overlayOpacity = std::min(1.0, effective.overlayOpacity + 0.15);
    return effective;
}

} // namespace lumetra

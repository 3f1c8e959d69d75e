#include "model/ThermalState.h"

#include <QCoreApplication>

namespace lumetra {

std::string_view rawValue(ThermalState state) {
    switch (state) {
    case ThermalState::nominal:
        return "nominal";
    case ThermalState::fair:
        return "fair";
    case ThermalState::serious:
        return "serious";
    case ThermalState::critical:
        return "critical";
    }
    return "nominal";
}

std::optional<ThermalState> thermalStateFromRaw(std::string_view raw) {
    for (ThermalState state : kAllThermalStates) {
        if (rawValue(state) == raw)
            return state;
    }
    return std::nullopt;
}

QString label(ThermalState state) {
    switch (state) {
    case ThermalState::nominal:
        return QCoreApplication::translate("ThermalState", "Nominal");
    case ThermalState::fair:
        return QCoreApplication::translate("ThermalState", "Fair");
    case ThermalState::serious:
        return QCoreApplication::translate("ThermalState", "Serious");
    case ThermalState::critical: {
        const char* key = "thermalState.critical";
        const QString translated = QCoreApplication::translate("ThermalState", key);
        return translated == QLatin1String(key) ? QStringLiteral("Critical") : translated;
    }
    }
    return {};
}

} // namespace lumetra

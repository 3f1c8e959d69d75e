#include "model/ThermalState.h"

#include <QCoreApplication>

namespace lumetra {

QString label(ThermalState state) {
    const char* key = enumCase(state).english;
    const QString translated = QCoreApplication::translate(EnumTraits<ThermalState>::context, key);
    if (state == ThermalState::critical && translated == QLatin1String(key))
        return QStringLiteral("Critical");
    return translated;
}

} // namespace lumetra

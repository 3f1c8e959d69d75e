#include "appearance/AppearanceMode.h"

namespace lumetra {

QString title(AppearanceMode mode) {
    return displayName(mode);
}

QString description(AppearanceMode mode) {
    return QCoreApplication::translate(EnumTraits<AppearanceMode>::context,
                                       EnumTraits<AppearanceMode>::descriptions[enumIndex(mode)]);
}

} // namespace lumetra

#include "appearance/AppearanceManager.h"

namespace lumetra {

AppearanceManager::AppearanceManager(bool reduceTransparency, bool increaseContrast,
                                     QObject* parent)
    : QObject(parent), reduceTransparency_(reduceTransparency),
      increaseContrast_(increaseContrast) {}

void AppearanceManager::setFlags(bool reduceTransparency, bool increaseContrast) {
    if (reduceTransparency != reduceTransparency_) {
        reduceTransparency_ = reduceTransparency;
        emit reduceTransparencyChanged();
    }
    if (increaseContrast != increaseContrast_) {
        increaseContrast_ = increaseContrast;
        emit increaseContrastChanged();
    }
}

} // namespace lumetra

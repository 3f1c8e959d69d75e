#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// A metric that can appear in the menu bar label.
enum class MenuBarMetric { cpu, memory, temperature, download, upload, swap, diskRead, diskWrite };

template <>
struct EnumTraits<MenuBarMetric> {
    static constexpr const char* context = "MenuBarMetric";
    static constexpr std::array cases{
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::cpu, "cpu",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "CPU")},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::memory, "memory",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "Memory")},
        EnumCase<MenuBarMetric, std::string_view>{
            MenuBarMetric::temperature, "temperature",
            QT_TRANSLATE_NOOP("MenuBarMetric", "Temperature")},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::download, "download",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "Download")},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::upload, "upload",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "Upload")},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::swap, "swap",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "Swap")},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::diskRead, "diskRead",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "Disk Read")},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::diskWrite, "diskWrite",
                                                  QT_TRANSLATE_NOOP("MenuBarMetric", "Disk Write")},
    };
};

} // namespace lumetra

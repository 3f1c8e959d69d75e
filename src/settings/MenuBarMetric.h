#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// A metric that can appear in the menu bar label: its key in the settings file. Everything
// else about it (name, mark, icon, formats) is its row in the metric catalogue.
enum class MenuBarMetric { cpu, memory, temperature, download, upload, swap, diskRead, diskWrite };

template <>
struct EnumTraits<MenuBarMetric> {
    static constexpr const char* context = "MenuBarMetric";
    static constexpr bool hasDisplayName = false; // metricName() in the catalogue
    static constexpr std::array cases{
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::cpu, "cpu", nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::memory, "memory", nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::temperature, "temperature",
                                                  nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::download, "download", nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::upload, "upload", nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::swap, "swap", nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::diskRead, "diskRead", nullptr},
        EnumCase<MenuBarMetric, std::string_view>{MenuBarMetric::diskWrite, "diskWrite", nullptr},
    };
};

} // namespace lumetra

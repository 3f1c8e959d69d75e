// Arbitrary bytes as a stored appearance configuration: decoding is strict and never
// crashes, what decodes encodes back to the same configuration, resolving keeps its promises,
// and the store falls back to the default for whatever does not decode.
#include "appearance/AppearanceConfiguration.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdlib>

using namespace lumetra;

namespace {

void check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const std::optional<AppearanceConfiguration> decoded = AppearanceConfiguration::fromJson(bytes);

    if (decoded) {
        const std::optional<QByteArray> json = decoded->toJson();
        check(json.has_value());
        check(AppearanceConfiguration::fromJson(*json) == decoded);
        for (int flags = 0; flags < 4; ++flags) {
            const bool reduce = flags & 1;
            const bool contrast = flags & 2;
            const AppearanceConfiguration effective =
                AppearanceConfiguration::resolve(AppearanceMode::custom, decoded, reduce, contrast);
            check(effective.mode == decoded->mode);
            check(effective.material == decoded->material);
            check(effective.blurIntensity == decoded->blurIntensity);
            if (reduce)
                check(effective.backgroundOpacity == 1.0 && effective.overlayOpacity == 1.0 &&
                      !effective.vibrancyEnabled);
            if (contrast)
                check(effective.overlayOpacity <= 1.0);
            if (!reduce && !contrast)
                check(effective == *decoded);
        }
    }

    // In memory only: the path is empty.
    UserDefaults defaults{QString()};
    defaults.setValue(QStringLiteral("customConfiguration"), bytes);
    SettingsStore store(defaults);
    check(store.customConfiguration() ==
          decoded.value_or(AppearanceConfiguration::preset(AppearanceMode::custom)));
    return 0;
}

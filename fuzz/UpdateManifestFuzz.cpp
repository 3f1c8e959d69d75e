// Manifest decoding and version comparison on arbitrary bytes: no crash, no hang, and the
// comparison stays a strict order.
#include "updates/UpdateManifest.h"
#include "updates/Version.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    const auto decoded = lumetra::decodeUpdateManifest(bytes);
    if (const auto* manifest = std::get_if<lumetra::UpdateManifest>(&decoded)) {
        if (!manifest->downloadURL.isValid() || manifest->downloadURL.isRelative())
            std::abort();
        if (manifest->releaseNotesURL && !manifest->releaseNotesURL->isValid())
            std::abort();
        lumetra::isNewerVersion(manifest->latestVersion, u"1.0");
    } else if (std::get<lumetra::UpdateCheckError>(decoded).description.isEmpty()) {
        std::abort();
    }

    // The same bytes as two version strings, split at the first NUL or in the middle.
    const QString text = QString::fromUtf8(bytes);
    qsizetype cut = text.indexOf(QChar(0));
    if (cut < 0)
        cut = text.size() / 2;
    const QStringView candidate = QStringView(text).left(cut);
    const QStringView current = QStringView(text).mid(cut + 1 <= text.size() ? cut + 1 : cut);
    const bool newer = lumetra::isNewerVersion(candidate, current);
    const bool older = lumetra::isNewerVersion(current, candidate);
    if ((newer && older) || lumetra::isNewerVersion(candidate, candidate))
        std::abort();
    // Appending a zero component never changes the order.
    const QString padded = candidate.toString() + QStringLiteral(".0");
    if (lumetra::isNewerVersion(padded, current) != newer)
        std::abort();
    return 0;
}

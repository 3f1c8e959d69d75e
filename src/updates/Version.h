#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <vector>

namespace lumetra {

// The numeric components of a dotted version string. Empty pieces are dropped (1..2 reads
// as 1.2) and so is every piece that is not a whole base-10 number with an optional sign, so
// 1.2.beta gives [1, 2], 2.0-rc1 gives [2] and abc gives []. Pre-release tags carry no
// meaning.
std::vector<std::int64_t> parseVersion(QStringView version);

// True only when `candidate` is strictly newer than `current`; a missing component counts
// as 0, so 1.2 and 1.2.0 are the same version.
bool isNewerVersion(QStringView candidate, QStringView current);

// The application's own version as the build set it, "0" when unset.
QString currentAppVersion();

} // namespace lumetra

#pragma once

namespace lumetra {

// The reverse-DNS application id: log categories, thread names, desktop and autostart files.
inline constexpr char kAppId[] = LUMETRA_APP_ID;

// The project version from the build, "0" when the build did not set one.
inline constexpr char kAppVersion[] = LUMETRA_VERSION;

} // namespace lumetra

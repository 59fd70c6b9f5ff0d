#pragma once

#include <QUrl>

/// The two addresses that are fixed when the program is built (the CMake options LUMENFOLD_API_BASE_URL and
/// LUMENFOLD_WEB_BASE_URL). A build with an address that does not parse stops when it is first asked for it.
namespace lumenfold {

[[nodiscard]] QUrl builtInApiBaseURL();
[[nodiscard]] QUrl builtInWebBaseURL();

} // namespace lumenfold

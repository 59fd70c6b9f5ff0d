#pragma once

#include <QByteArray>
#include <QUrl>

/// Where updates come from, fixed when the program is built (the CMake options LUMENFOLD_UPDATE_FEED_URL and
/// LUMENFOLD_UPDATE_PUBLIC_KEY).
namespace lumenfold {

[[nodiscard]] QUrl builtInUpdateFeed();
/// The Ed25519 key that feeds are signed with; empty in a build without one, which trusts no feed.
[[nodiscard]] QByteArray builtInUpdateKey();

} // namespace lumenfold

#pragma once

#include <QtGlobal>

namespace lumenfold::test {

inline constexpr qint64 ownPid = 100;
inline constexpr qint64 otherPid = 200;

} // namespace lumenfold::test

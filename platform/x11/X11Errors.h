#pragma once

#include "platform/PlatformError.h"
#include "platform/x11/XcbPointer.h"

#include <QString>

#include <tl/expected.hpp>

#include <xcb/xcb.h>

namespace lumenfold::x11 {

/// The domain of errors that the X server or the connection to it reported; `code` is the protocol's error code, 0 when
/// the connection itself broke.
inline constexpr char x11ErrorDomain[] = "org.lumenfold.x11";

/// "BadWindow in GetImage for 0x1c00007".
[[nodiscard]] QString describe(const xcb_generic_error_t &error);

[[nodiscard]] PlatformError platformError(const xcb_generic_error_t &error);

/// The error of every operation on a connection that is closed or broken.
[[nodiscard]] PlatformError connectionLost();

/// A reply or the error that came in its place.
template <typename T>
using Answer = tl::expected<XcbPointer<T>, PlatformError>;

} // namespace lumenfold::x11

#pragma once

#include <xcb/xinput.h>

namespace lumenfold {

/// The input extension's 32.32 numbers.
[[nodiscard]] inline double toDouble(const xcb_input_fp3232_t &number)
{
    constexpr double fraction = 4294967296.0;
    return number.integral + number.frac / fraction;
}

} // namespace lumenfold

#include "platform/x11/X11Errors.h"

#include <array>

namespace lumenfold::x11 {
namespace {

using namespace Qt::StringLiterals;

QString errorName(std::uint8_t code)
{
    static constexpr std::array<const char *, 18> names{
        "Success",   "BadRequest", "BadValue",    "BadWindow",   "BadPixmap", "BadAtom",
        "BadCursor", "BadFont",    "BadMatch",    "BadDrawable", "BadAccess", "BadAlloc",
        "BadColor",  "BadGC",      "BadIDChoice", "BadName",     "BadLength", "BadImplementation"};
    if (code < names.size()) {
        return QString::fromLatin1(names.at(code));
    }
    return u"error %1"_s.arg(code);
}

} // namespace

QString describe(const xcb_generic_error_t &error)
{
    return u"%1 in request %2.%3 for 0x%4"_s.arg(errorName(error.error_code))
        .arg(error.major_code)
        .arg(error.minor_code)
        .arg(error.resource_id, 0, 16);
}

PlatformError platformError(const xcb_generic_error_t &error)
{
    return {.domain = QString::fromLatin1(x11ErrorDomain), .code = error.error_code, .description = describe(error)};
}

PlatformError connectionLost()
{
    return {.domain = QString::fromLatin1(x11ErrorDomain),
            .code = 0,
            .description = u"the connection to the X server is closed"_s};
}

} // namespace lumenfold::x11

#pragma once

#include <QByteArrayView>
#include <QImage>

namespace lumenfold {

/// Reads PNG files of any origin, and so trusts nothing in them: a file that is broken, cut short, has a wrong checksum
/// or claims more than PngFormat.h allows gives a null picture. Any thread.
class PngDecoder {
public:
    /// The pixels, Format_RGB32 when the file has no transparency and Format_ARGB32 otherwise.
    [[nodiscard]] static QImage decode(QByteArrayView file);
};

} // namespace lumenfold

#pragma once

#include <QImage>

#include <cstdint>

namespace lumenfold::test {

/// Every pixel different and none to be guessed: nothing deflates it, and the PNG of a whole desktop is larger than any
/// request to the X server can be. Format RGB32.
[[nodiscard]] inline QImage noise(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    std::uint32_t state = 1;
    for (int y = 0; y < picture.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            state = state * 1664525 + 1013904223;
            row[x] = 0xff000000 | (state ^ (state >> 13));
        }
    }
    return picture;
}

} // namespace lumenfold::test

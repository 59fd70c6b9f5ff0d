#include "platform/image/PngFilter.h"

#include <QtEndian>

#include <cstdint>
#include <cstring>

namespace lumenfold::png {
namespace {

constexpr unsigned char subFilter = 1;

struct Pixel {
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    unsigned char alpha = 0;
};

Pixel readPixel(const unsigned char *source)
{
    std::uint32_t value = 0;
    std::memcpy(&value, source, sizeof value);
    return {static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 8),
            static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 24)};
}

template <int Channels>
void filterPixels(const unsigned char *pixels, int width, unsigned char *target)
{
    Pixel before;
    for (int x = 0; x < width; ++x) {
        const Pixel pixel = readPixel(pixels + 4 * static_cast<std::size_t>(x));
        target[0] = static_cast<unsigned char>(pixel.red - before.red);
        target[1] = static_cast<unsigned char>(pixel.green - before.green);
        target[2] = static_cast<unsigned char>(pixel.blue - before.blue);
        if constexpr (Channels == 4) {
            target[3] = static_cast<unsigned char>(pixel.alpha - before.alpha);
        }
        target += Channels;
        before = pixel;
    }
}

} // namespace

void filterRowPortable(const unsigned char *pixels, int width, ColorType colorType, unsigned char *target)
{
    target[0] = subFilter;
    if (colorType == ColorType::rgb) {
        filterPixels<3>(pixels, width, target + 1);
    } else {
        filterPixels<4>(pixels, width, target + 1);
    }
}

void filterRow(const unsigned char *pixels, int width, ColorType colorType, unsigned char *target)
{
    filterRowPortable(pixels, width, colorType, target);
}

} // namespace lumenfold::png

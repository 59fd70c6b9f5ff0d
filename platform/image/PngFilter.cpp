#include "platform/image/PngFilter.h"

#include <cstdint>
#include <cstring>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace lumenfold::png {
namespace {

constexpr std::ptrdiff_t bytesPerPixel = 4;

/// Filters pixels from `x` on, at least 1, and returns the pixel at which it stopped. With three channels a block
/// writes more than it means to, so the last pixels of a row are left to the portable code.
using BlockFilter = std::ptrdiff_t (*)(const unsigned char *pixels, std::ptrdiff_t x, std::ptrdiff_t width,
                                       unsigned char *target);

/// A pixel as one number, 0xAARRGGBB, whatever the order of its bytes in memory.
std::uint32_t readPixel(const unsigned char *source)
{
    std::uint32_t value = 0;
    std::memcpy(&value, source, sizeof value);
    return value;
}

template <int Channels, Filter Kind>
void filterPixels(const unsigned char *pixels, std::ptrdiff_t x, std::ptrdiff_t width, unsigned char *target)
{
    std::uint32_t before = 0;
    if (Kind == Filter::sub && x > 0) {
        before = readPixel(pixels + bytesPerPixel * (x - 1));
    }
    target += Channels * x;
    for (; x < width; ++x) {
        const std::uint32_t pixel = readPixel(pixels + bytesPerPixel * x);
        target[0] = static_cast<unsigned char>((pixel >> 16) - (before >> 16));
        target[1] = static_cast<unsigned char>((pixel >> 8) - (before >> 8));
        target[2] = static_cast<unsigned char>(pixel - before);
        if constexpr (Channels == 4) {
            target[3] = static_cast<unsigned char>((pixel >> 24) - (before >> 24));
        }
        target += Channels;
        if constexpr (Kind == Filter::sub) {
            before = pixel;
        }
    }
}

/// For rows whose pixels are all filtered one by one.
std::ptrdiff_t filterNoBlocks(const unsigned char *, std::ptrdiff_t x, std::ptrdiff_t, unsigned char *)
{
    return x;
}

#ifdef __x86_64__

/// In each group of four pixels blue and red change places, and for RGB the fourth bytes fall out.
template <int Channels>
__attribute__((target("ssse3"))) __m128i outputOrder()
{
    return Channels == 3 ? _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)
                         : _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15);
}

template <int Channels, Filter Kind>
__attribute__((target("ssse3"))) std::ptrdiff_t filterBlocksSsse3(const unsigned char *pixels, std::ptrdiff_t x,
                                                                  std::ptrdiff_t width, unsigned char *target)
{
    const __m128i order = outputOrder<Channels>();
    // 16 bytes are written for 4 pixels, so with 3 channels 2 more pixels must follow.
    const std::ptrdiff_t end = width - (Channels == 3 ? 5 : 3);
    for (; x < end; x += 4) {
        const unsigned char *source = pixels + bytesPerPixel * x;
        __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(source));
        if constexpr (Kind == Filter::sub) {
            block = _mm_sub_epi8(block, _mm_loadu_si128(reinterpret_cast<const __m128i *>(source - bytesPerPixel)));
        }
        _mm_storeu_si128(reinterpret_cast<__m128i *>(target + Channels * x), _mm_shuffle_epi8(block, order));
    }
    return x;
}

template <int Channels, Filter Kind>
__attribute__((target("avx2"))) std::ptrdiff_t filterBlocksAvx2(const unsigned char *pixels, std::ptrdiff_t x,
                                                                std::ptrdiff_t width, unsigned char *target)
{
    const __m256i order = _mm256_broadcastsi128_si256(outputOrder<Channels>());
    // Two overlapping writes of 16 bytes for 8 pixels.
    const std::ptrdiff_t end = width - (Channels == 3 ? 9 : 7);
    for (; x < end; x += 8) {
        const unsigned char *source = pixels + bytesPerPixel * x;
        __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(source));
        if constexpr (Kind == Filter::sub) {
            block =
                _mm256_sub_epi8(block, _mm256_loadu_si256(reinterpret_cast<const __m256i *>(source - bytesPerPixel)));
        }
        block = _mm256_shuffle_epi8(block, order);
        unsigned char *place = target + Channels * x;
        _mm_storeu_si128(reinterpret_cast<__m128i *>(place), _mm256_castsi256_si128(block));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(place + 4 * Channels), _mm256_extracti128_si256(block, 1));
    }
    return x;
}

#endif

template <int Channels, Filter Kind, BlockFilter FilterBlocks>
void filterWholeRow(const unsigned char *pixels, int width, unsigned char *target)
{
    target[0] = static_cast<unsigned char>(Kind);
    ++target;
    // The first pixel has none before it that a block could read.
    filterPixels<Channels, Kind>(pixels, 0, 1, target);
    filterPixels<Channels, Kind>(pixels, FilterBlocks(pixels, 1, width, target), width, target);
}

template <BlockFilter SubRgb, BlockFilter SubRgba, BlockFilter NoneRgb, BlockFilter NoneRgba>
void filterRow(const unsigned char *pixels, int width, Filter filter, ColorType colorType, unsigned char *target)
{
    const bool rgb = colorType == ColorType::rgb;
    if (filter == Filter::sub) {
        rgb ? filterWholeRow<3, Filter::sub, SubRgb>(pixels, width, target)
            : filterWholeRow<4, Filter::sub, SubRgba>(pixels, width, target);
    } else {
        rgb ? filterWholeRow<3, Filter::none, NoneRgb>(pixels, width, target)
            : filterWholeRow<4, Filter::none, NoneRgba>(pixels, width, target);
    }
}

} // namespace

const std::vector<RowFilterVariant> &rowFilterVariants()
{
    // Never destroyed: a program that ends while a picture is being encoded waits for the encoding after its statics
    // began to go.
    static const auto &variants = *new std::vector<RowFilterVariant>([] {
        std::vector<RowFilterVariant> runnable;
#ifdef __x86_64__
        if (__builtin_cpu_supports("avx2")) {
            runnable.push_back(
                {"AVX2", &filterRow<filterBlocksAvx2<3, Filter::sub>, filterBlocksAvx2<4, Filter::sub>,
                                    filterBlocksAvx2<3, Filter::none>, filterBlocksAvx2<4, Filter::none>>});
        }
        if (__builtin_cpu_supports("ssse3")) {
            runnable.push_back(
                {"SSSE3", &filterRow<filterBlocksSsse3<3, Filter::sub>, filterBlocksSsse3<4, Filter::sub>,
                                     filterBlocksSsse3<3, Filter::none>, filterBlocksSsse3<4, Filter::none>>});
        }
#endif
        runnable.push_back({"portable", &filterRow<filterNoBlocks, filterNoBlocks, filterNoBlocks, filterNoBlocks>});
        return runnable;
    }());
    return variants;
}

} // namespace lumenfold::png

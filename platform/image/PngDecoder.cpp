#include "platform/image/PngDecoder.h"

#include "platform/image/PngFormat.h"

#include <spng.h>

#include <memory>

namespace lumenfold {
namespace {

/// Beside the pixels a file may carry texts and profiles. They are of no interest here and get little room.
constexpr std::size_t maximumChunkBytes = 64 * 1024 * 1024;
constexpr std::size_t maximumCacheBytes = 64 * 1024 * 1024;

using Context = std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)>;

Context openFile(QByteArrayView file)
{
    Context context(spng_ctx_new(0), &spng_ctx_free);
    // The checksums of the critical chunks are known to be right. libspng itself would stop at the last pixel and never
    // see the last of them.
    if (!context || spng_set_crc_action(context.get(), SPNG_CRC_USE, SPNG_CRC_DISCARD) != SPNG_OK ||
        spng_set_image_limits(context.get(), png::maximumSide, png::maximumSide) != SPNG_OK ||
        spng_set_chunk_limits(context.get(), maximumChunkBytes, maximumCacheBytes) != SPNG_OK ||
        spng_set_png_buffer(context.get(), file.data(), static_cast<std::size_t>(file.size())) != SPNG_OK) {
        context.reset();
    }
    return context;
}

bool hasTransparency(spng_ctx *context, const spng_ihdr &header)
{
    spng_trns transparency{};
    return header.color_type == SPNG_COLOR_TYPE_TRUECOLOR_ALPHA ||
           header.color_type == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA || spng_get_trns(context, &transparency) == SPNG_OK;
}

} // namespace

QImage PngDecoder::decode(QByteArrayView file)
{
    const std::optional<PixelSize> size = png::readHeader(file);
    if (!size || !png::isIntact(file)) {
        return {};
    }
    const Context context = openFile(file);
    spng_ihdr header{};
    if (!context || spng_get_ihdr(context.get(), &header) != SPNG_OK) {
        return {};
    }
    const bool transparent = hasTransparency(context.get(), header);
    QImage image(size->width, size->height, transparent ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888);
    if (image.isNull() || spng_decode_image(context.get(), image.bits(), static_cast<std::size_t>(image.sizeInBytes()),
                                            SPNG_FMT_RGBA8, SPNG_DECODE_TRNS) != SPNG_OK) {
        return {};
    }
    image.convertTo(transparent ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    return image;
}

} // namespace lumenfold

/// Feeds the loader of pictures: files in the card folder and answers of the editor come from outside. Whatever they
/// hold, the loader gives a picture of exactly the size that the header says, or none.
#include "platform/image/Image.h"
#include "platform/image/PngFormat.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maximumSize);

namespace {

/// A picture that claims more would make the fuzzer wait for memory, not find anything.
constexpr std::int64_t interestingPixels = 1024 * 1024;

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

std::uint32_t readBigEndian(const std::uint8_t *bytes)
{
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

/// Gives every whole chunk the checksum that it should have.
void repairChecksums(std::uint8_t *data, std::size_t size)
{
    namespace png = lumenfold::png;
    std::size_t at = png::signature.size();
    while (at + png::chunkOverhead <= size) {
        const std::size_t dataBytes = readBigEndian(data + at);
        if (dataBytes > size - at - png::chunkOverhead) {
            return;
        }
        char type[5] = {};
        std::memcpy(type, data + at + 4, 4);
        png::sealChunk(data + at, type, dataBytes);
        at += png::chunkOverhead + dataBytes;
    }
}

} // namespace

/// Nothing that the fuzzer changes would ever get past the checksums, so most inputs get right ones.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t maximumSize,
                                               unsigned seed)
{
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maximumSize);
    if (seed % 8 != 0) {
        repairChecksums(data, mutated);
    }
    return mutated;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace lumenfold;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const Image image = Image::fromPng(bytes);
    if (image.isNull()) {
        return 0;
    }
    const PixelSize pixelSize = image.pixelSize().value();
    require(png::isBelievable(pixelSize));
    require(image.pngData() == bytes);
    if (std::int64_t{pixelSize.width} * pixelSize.height > interestingPixels) {
        return 0;
    }
    const QImage pixels = image.pixels();
    require(pixels.isNull() || (pixels.width() == pixelSize.width && pixels.height() == pixelSize.height));
    require(image.thumbnail({16, 16}).isNull() == pixels.isNull());
    return 0;
}

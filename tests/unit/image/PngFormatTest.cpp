#include "platform/image/PngFormat.h"

#include "tests/unit/image/PngChunks.h"
#include "tests/unit/image/TestPictures.h"

#include <gmock/gmock.h>

#include <zlib.h>

#include <random>

namespace lumenfold {
namespace {

using test::PngHeader;

QByteArray fileWithHeader(const PngHeader &header)
{
    return test::pngFile({test::headerChunk(header)});
}

TEST(PngFormat, readsTheSizeOfAHeader)
{
    EXPECT_EQ(png::readHeader(fileWithHeader({.width = 3840, .height = 2160})), (PixelSize{3840, 2160}));
    EXPECT_EQ(png::readHeader(fileWithHeader({.width = 1, .height = 32768})), (PixelSize{1, 32768}));
}

TEST(PngFormat, readsTheHeaderThatItWrites)
{
    QByteArray header(static_cast<qsizetype>(png::headerBytes), '\0');
    png::writeHeader(reinterpret_cast<unsigned char *>(header.data()), {257, 3}, png::ColorType::rgba);

    EXPECT_EQ(png::readHeader(header), (PixelSize{257, 3}));
    EXPECT_EQ(header, fileWithHeader({.width = 257, .height = 3, .colorType = 6}));
}

TEST(PngFormat, doesNotBelieveEverySize)
{
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 0, .height = 10})));
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 10, .height = 0})));
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 32769, .height = 1})));
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 1, .height = 32769})));
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 0xffffffff, .height = 1})));
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 0x80000001, .height = 0x80000001})));
    // Exactly 512 megapixels, and one row more.
    EXPECT_TRUE(png::readHeader(fileWithHeader({.width = 32768, .height = 16384})));
    EXPECT_FALSE(png::readHeader(fileWithHeader({.width = 32768, .height = 16385})));
}

TEST(PngFormat, doesNotBelieveWhatIsNoPng)
{
    const QByteArray good = fileWithHeader({.width = 16, .height = 16});
    ASSERT_TRUE(png::readHeader(good));
    EXPECT_FALSE(png::readHeader(QByteArray()));
    EXPECT_FALSE(png::readHeader("GIF89a"));
    EXPECT_FALSE(png::readHeader(QByteArray(1000, 'x')));
    for (qsizetype length = 0; length < good.size(); ++length) {
        EXPECT_FALSE(png::readHeader(good.first(length))) << length;
    }
    for (qsizetype at = 0; at < good.size(); ++at) {
        QByteArray broken = good;
        broken[at] = static_cast<char>(broken[at] ^ 0x20);
        EXPECT_FALSE(png::readHeader(broken)) << at;
    }
}

TEST(PngFormat, combinesChecksumsAsIfTheBytesStoodTogether)
{
    std::mt19937 random(5);
    for (const std::size_t first : {0U, 1U, 100U, 65521U, 300000U}) {
        for (const std::size_t second : {0U, 1U, 255U, 65520U, 65521U, 200001U}) {
            std::vector<unsigned char> bytes(first + second);
            for (unsigned char &byte : bytes) {
                byte = static_cast<unsigned char>(random() | 0x80);
            }
            const auto adler = [&](std::size_t from, std::size_t count) {
                return static_cast<std::uint32_t>(::adler32(1, bytes.data() + from, static_cast<uInt>(count)));
            };
            EXPECT_EQ(png::combineAdler32(adler(0, first), adler(first, second), second), adler(0, first + second))
                << first << " and " << second;
        }
    }
}

} // namespace
} // namespace lumenfold

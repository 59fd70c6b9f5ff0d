#include "platform/image/PngFilter.h"

#include "tests/unit/image/TestPictures.h"

#include <gmock/gmock.h>

#include <vector>

namespace lumenfold {
namespace {

using png::ColorType;
using png::Filter;

/// The filters as the format describes them, byte by byte.
std::vector<unsigned char> expectedRow(const QImage &row, Filter filter, ColorType colorType)
{
    std::vector<unsigned char> bytes{static_cast<unsigned char>(filter)};
    const std::size_t channels = colorType == ColorType::rgb ? 3 : 4;
    for (int x = 0; x < row.width(); ++x) {
        const QRgb pixel = reinterpret_cast<const QRgb *>(row.constScanLine(0))[x];
        for (const int value : {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)}) {
            bytes.push_back(static_cast<unsigned char>(value));
        }
        if (channels == 3) {
            bytes.pop_back();
        }
    }
    if (filter == Filter::sub) {
        for (std::size_t at = bytes.size() - 1; at > channels; --at) {
            bytes[at] = static_cast<unsigned char>(bytes[at] - bytes[at - channels]);
        }
    }
    return bytes;
}

class PngFilterTest : public ::testing::TestWithParam<png::RowFilterVariant> {};

TEST_P(PngFilterTest, givesTheBytesOfTheFormatAndWritesNothingElse)
{
    constexpr unsigned char untouched = 0xcd;
    constexpr std::size_t margin = 64;
    for (int width = 1; width <= 70; ++width) {
        // Copied, so that a sanitizer sees a read beyond the row.
        const QImage row = test::withTransparency(test::noisePicture({width, 1}, static_cast<unsigned>(width)));
        const std::vector<unsigned char> pixels(row.constBits(), row.constBits() + row.sizeInBytes());
        for (const Filter filter : {Filter::none, Filter::sub}) {
            for (const ColorType colorType : {ColorType::rgb, ColorType::rgba}) {
                std::vector<unsigned char> target(png::filteredRowBytes(width, colorType) + margin, untouched);

                GetParam().filterRow(pixels.data(), width, filter, colorType, target.data());

                std::vector<unsigned char> expected = expectedRow(row, filter, colorType);
                ASSERT_EQ(expected.size() + margin, target.size());
                expected.resize(target.size(), untouched);
                EXPECT_EQ(target, expected) << "width " << width;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, PngFilterTest, ::testing::ValuesIn(png::rowFilterVariants()),
                         [](const auto &variant) { return std::string(variant.param.name); });

TEST(PngFilterVariants, endWithThePortableOne)
{
    EXPECT_STREQ(png::rowFilterVariants().back().name, "portable");
}

} // namespace
} // namespace lumenfold

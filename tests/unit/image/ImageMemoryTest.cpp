/// A program that waits must not hold the memory of the pictures that went through it.
#include "platform/image/EncodingPool.h"
#include "platform/image/Image.h"
#include "tests/unit/image/TestPictures.h"

#include <QFile>
#include <QThreadPool>

#include <gmock/gmock.h>

namespace lumenfold {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryIsCountable = false;
#else
constexpr bool memoryIsCountable = true;
#endif

/// Resident, in megabytes.
double residentMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.simplified().split(' ').at(1).toDouble() / 1024;
        }
    }
    ADD_FAILURE() << "the system does not say";
    return 0;
}

class ImageMemory : public ::testing::TestWithParam<QSize> {};

TEST_P(ImageMemory, goesBackToTheSystem)
{
    if (!memoryIsCountable) {
        GTEST_SKIP() << "the sanitizer keeps what is freed";
    }
    const auto encodeAndShow = [] {
        const Image image = Image::fromPixels(test::gradientPicture(GetParam()));
        image.releasePixelsWhenEncoded();
        EXPECT_TRUE(image.pngData());
        // Decodes the pixels again.
        EXPECT_FALSE(image.thumbnail({400, 300}).isNull());
        EXPECT_FALSE(image.holdsPixels());
        return image;
    };
    // The first one pays for code, fonts and the like.
    (void)encodeAndShow();
    encodingPool().waitForDone();
    const double before = residentMemory();
    const double pixels = GetParam().width() * GetParam().height() * 4 / 1024.0 / 1024.0;
    for (int round = 0; round < 4; ++round) {
        const Image image = encodeAndShow();
        EXPECT_LT(residentMemory(),
                  before + pixels / 4 + static_cast<double>(image.pngData()->size()) / 1024 / 1024 + 3);
    }
    encodingPool().waitForDone();
    EXPECT_LT(residentMemory(), before + 3);
}

// A part of a screen, a screen and a large screen.
INSTANTIATE_TEST_SUITE_P(, ImageMemory, ::testing::Values(QSize(1400, 1000), QSize(1920, 1080), QSize(3840, 2160)),
                         [](const auto &size) { return std::to_string(size.param.width()); });

} // namespace
} // namespace lumenfold

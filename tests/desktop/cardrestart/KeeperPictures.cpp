#include "tests/desktop/cardrestart/KeeperPictures.h"

#include <random>

namespace lumenfold::test {

QImage keeperPicture(const QString &text, int version)
{
    const std::u16string letters = text.toStdU16String();
    std::seed_seq seed(letters.begin(), letters.end());
    std::mt19937 random(seed);
    random.discard(static_cast<unsigned long long>(version));
    const auto between = [&random](unsigned least, unsigned most) {
        return static_cast<int>(least + random() % (most - least + 1));
    };
    const int width = between(20, 300);
    QImage picture(width, between(20, 200), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < width; ++x) {
            row[x] = static_cast<QRgb>(random()) | 0xff000000;
        }
    }
    picture.setPixel(0, 0, 0xff000000 | static_cast<QRgb>(version));
    return picture;
}

bool isKeeperPicture(const QImage &picture, const QString &text)
{
    return !picture.isNull() && picture.convertToFormat(QImage::Format_RGB32) ==
                                    keeperPicture(text, static_cast<int>(picture.pixel(0, 0) & 0xffffff));
}

} // namespace lumenfold::test

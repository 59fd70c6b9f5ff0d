#include "tests/unit/image/TestPictures.h"

#include <array>
#include <cstring>
#include <functional>
#include <random>

namespace lumenfold::test {
namespace {

QImage painted(QSize size, const std::function<QRgb(int x, int y)> &color)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            row[x] = color(x, y);
        }
    }
    return picture;
}

} // namespace

QImage plainPicture(QSize size, QColor color)
{
    return painted(size, [rgb = color.rgb()](int, int) { return rgb; });
}

QImage gradientPicture(QSize size)
{
    return painted(size, [](int x, int y) { return qRgb((x + y) & 0xff, (2 * x + 100) & 0xff, (3 * y + 7) & 0xff); });
}

QImage noisePicture(QSize size, unsigned seed)
{
    std::mt19937 random(seed);
    return painted(size, [&](int, int) { return 0xff000000 | static_cast<QRgb>(random()); });
}

QImage textLikePicture(QSize size)
{
    constexpr std::array<QRgb, 4> inks{0xff202020, 0xff20a030, 0xff9090ff, 0xff707070};
    std::mt19937 random(3);
    std::array<unsigned, 26> glyphs{};
    for (unsigned &glyph : glyphs) {
        glyph = static_cast<unsigned>(random());
    }
    return painted(size, [&](int x, int y) {
        const unsigned glyph = glyphs[static_cast<std::size_t>((x / 8 * 7 + y / 12 * 5) % 26)];
        const bool inked = x % 8 < 5 && y % 12 < 6 && (glyph >> (x % 8 + 5 * (y % 12)) & 1) != 0;
        return inked ? inks[static_cast<std::size_t>(y / 12 % 4)] : QRgb{0xfffcfcfc};
    });
}

QImage withTransparency(const QImage &picture)
{
    QImage transparent = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < transparent.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(transparent.scanLine(y));
        for (int x = 0; x < transparent.width(); ++x) {
            row[x] = (row[x] & RGB_MASK) | static_cast<QRgb>((x * 5 + y * 3 + 1) & 0xff) << 24;
        }
    }
    return transparent;
}

QImage withPaddedRows(const QImage &picture)
{
    constexpr qsizetype padding = 20;
    const qsizetype stride = picture.width() * qsizetype{4} + padding;
    auto *memory = new QByteArray(stride * picture.height(), '\xa5');
    for (int y = 0; y < picture.height(); ++y) {
        std::memcpy(memory->data() + y * stride, picture.constScanLine(y),
                    static_cast<std::size_t>(picture.width()) * 4);
    }
    return QImage(
        reinterpret_cast<uchar *>(memory->data()), picture.width(), picture.height(), stride, picture.format(),
        [](void *bytes) { delete static_cast<QByteArray *>(bytes); }, memory);
}

} // namespace lumenfold::test

#include "tests/support/desktop/Pictures.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace lumenfold::test {
namespace {

/// A well mixed number for each place: the finaliser of a common 32-bit hash.
unsigned mixed(unsigned value)
{
    value ^= value >> 16;
    value *= 0x7feb352dU;
    value ^= value >> 15;
    value *= 0x846ca68bU;
    value ^= value >> 16;
    return value;
}

template <typename Colour>
QImage painted(QSize size, Colour colourAt)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            line[x] = colourAt(x, y);
        }
    }
    return picture;
}

} // namespace

QImage knownPicture(QSize size, unsigned seed)
{
    return painted(size, [seed](int x, int y) {
        const unsigned noise = mixed(static_cast<unsigned>(y) * 65'537U + static_cast<unsigned>(x) + seed * 7'919U);
        return qRgb((x + static_cast<int>(seed) * 40) & 255, (y + static_cast<int>(seed) * 90) & 255,
                    static_cast<int>(noise & 255U));
    });
}

QImage photographLike(QSize size, unsigned seed)
{
    const double width = size.width();
    const double height = size.height();
    return painted(size, [=](int x, int y) {
        const double u = x / width;
        const double v = y / height;
        const double ridge = 0.55 + 0.08 * std::sin(u * 9 + seed) + 0.03 * std::sin(u * 31 + 2.0 * seed);
        const double grain = (static_cast<int>(mixed(static_cast<unsigned>(y * size.width() + x) + seed) & 15U) - 7.5);
        const double light = v < ridge ? 1 - 0.5 * v / ridge : 0.45 + 0.25 * std::sin(u * 60 + v * 90);
        const auto channel = [&](double amount) { return std::clamp(int(255 * light * amount + grain), 0, 255); };
        return v < ridge ? qRgb(channel(0.55 + 0.3 * u), channel(0.75), channel(0.98))
                         : qRgb(channel(0.45), channel(0.85 - 0.3 * u), channel(0.4));
    });
}

QImage rootPicture(const XConnection &connection, QRect part)
{
    if (part.isNull()) {
        part = connection.frameOf(connection.root());
        part.moveTopLeft({0, 0});
    }
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        connection.get(),
        xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(),
                      static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
                      static_cast<std::uint16_t>(part.width()), static_cast<std::uint16_t>(part.height()), ~0U),
        nullptr));
    if (!reply) {
        throw std::runtime_error("the screen cannot be read");
    }
    return QImage(xcb_get_image_data(reply.get()), part.width(), part.height(), part.width() * 4, QImage::Format_RGB32)
        .copy();
}

QImage windowPicture(const XConnection &connection, xcb_window_t window)
{
    const QRect frame = connection.frameOf(window);
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        connection.get(),
        xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                      static_cast<std::uint16_t>(frame.width()), static_cast<std::uint16_t>(frame.height()), ~0U),
        nullptr));
    if (!reply) {
        throw std::runtime_error("the window cannot be read");
    }
    const auto format = reply->depth == 32 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return QImage(xcb_get_image_data(reply.get()), frame.width(), frame.height(), frame.width() * 4, format).copy();
}

xcb_pixmap_t pixmapOf(const XConnection &connection, const QImage &picture)
{
    xcb_connection_t *xcb = connection.get();
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    const xcb_pixmap_t pixmap = xcb_generate_id(xcb);
    const xcb_gcontext_t gc = xcb_generate_id(xcb);
    xcb_create_pixmap(xcb, connection.screen()->root_depth, pixmap, connection.root(),
                      static_cast<std::uint16_t>(pixels.width()), static_cast<std::uint16_t>(pixels.height()));
    xcb_create_gc(xcb, gc, pixmap, 0, nullptr);
    const auto requestHeader = static_cast<qsizetype>(sizeof(xcb_put_image_request_t) + 4);
    const qsizetype roomInRequest = qsizetype(xcb_get_maximum_request_length(xcb)) * 4 - requestHeader;
    const int rowsAtOnce = std::max<int>(1, static_cast<int>(roomInRequest / pixels.bytesPerLine()));
    for (int y = 0; y < pixels.height(); y += rowsAtOnce) {
        const int rows = std::min(rowsAtOnce, pixels.height() - y);
        xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, gc, static_cast<std::uint16_t>(pixels.width()),
                      static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(y), 0,
                      connection.screen()->root_depth,
                      static_cast<std::uint32_t>(pixels.bytesPerLine() * qsizetype(rows)), pixels.constScanLine(y));
    }
    xcb_free_gc(xcb, gc);
    return pixmap;
}

namespace {

template <typename Found>
void forEachDifference(const QImage &a, const QImage &b, Found found)
{
    const bool alpha = a.hasAlphaChannel() && b.hasAlphaChannel();
    const auto format = alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    const QImage left = a.convertToFormat(format);
    const QImage right = b.convertToFormat(format);
    const QRgb mask = alpha ? 0xffffffffU : 0x00ffffffU;
    for (int y = 0; y < left.height(); ++y) {
        const auto *leftLine = reinterpret_cast<const QRgb *>(left.constScanLine(y));
        const auto *rightLine = reinterpret_cast<const QRgb *>(right.constScanLine(y));
        for (int x = 0; x < left.width(); ++x) {
            if (((leftLine[x] ^ rightLine[x]) & mask) != 0) {
                found(x, y);
            }
        }
    }
}

} // namespace

qint64 differingPixels(const QImage &a, const QImage &b)
{
    if (a.size() != b.size()) {
        return -1;
    }
    qint64 count = 0;
    forEachDifference(a, b, [&count](int, int) { ++count; });
    return count;
}

int largestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size()) {
        return -1;
    }
    int largest = 0;
    forEachDifference(a, b, [&](int x, int y) {
        const QColor one = a.pixelColor(x, y);
        const QColor other = b.pixelColor(x, y);
        largest = std::max({largest, std::abs(one.red() - other.red()), std::abs(one.green() - other.green()),
                            std::abs(one.blue() - other.blue())});
    });
    return largest;
}

QRect differingRegion(const QImage &a, const QImage &b)
{
    QRect region;
    if (a.size() == b.size()) {
        forEachDifference(a, b, [&region](int x, int y) { region |= QRect(x, y, 1, 1); });
    }
    return region;
}

} // namespace lumenfold::test

#include "bench/DesktopPicture.h"

#include <QFontDatabase>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace lumenfold::bench {
namespace {

/// Values at the corners of a grid, blended smoothly between them: one octave of clouds.
class Clouds {
public:
    Clouds(int cell, int width, int height, std::mt19937 &random)
        : m_cell(cell)
        , m_columns(width / cell + 2)
        , m_corners(static_cast<std::size_t>(m_columns * (height / cell + 2)))
    {
        std::uniform_real_distribution<float> value(-1, 1);
        std::generate(m_corners.begin(), m_corners.end(), [&] { return value(random); });
    }

    [[nodiscard]] float at(int x, int y) const
    {
        const std::size_t corner = static_cast<std::size_t>(y / m_cell) * m_columns + x / m_cell;
        const float u = smooth(static_cast<float>(x % m_cell) / static_cast<float>(m_cell));
        const float v = smooth(static_cast<float>(y % m_cell) / static_cast<float>(m_cell));
        return std::lerp(std::lerp(m_corners[corner], m_corners[corner + 1], u),
                         std::lerp(m_corners[corner + m_columns], m_corners[corner + m_columns + 1], u), v);
    }

private:
    static float smooth(float t) { return t * t * (3 - 2 * t); }

    int m_cell;
    std::size_t m_columns;
    std::vector<float> m_corners;
};

QImage wallpaper(QSize size)
{
    std::mt19937 random(4);
    const std::array octaves{Clouds(900, size.width(), size.height(), random),
                             Clouds(210, size.width(), size.height(), random),
                             Clouds(47, size.width(), size.height(), random)};
    std::normal_distribution<float> grain(0, 1.2F);
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        const float height = static_cast<float>(y) / static_cast<float>(size.height());
        for (int x = 0; x < size.width(); ++x) {
            const float cloud = 48 * octaves[0].at(x, y) + 22 * octaves[1].at(x, y) + 6 * octaves[2].at(x, y);
            const auto channel = [&](float base) {
                return static_cast<int>(std::clamp(base + cloud + grain(random), 0.0F, 255.0F));
            };
            row[x] = qRgb(channel(70 + 90 * height), channel(110 + 40 * height), channel(170 - 60 * height));
        }
    }
    return picture;
}

QString lineOfText(std::mt19937 &random, int words)
{
    std::uniform_int_distribution<int> letters(1, 11);
    std::uniform_int_distribution<int> letter('a', 'z');
    QString line;
    for (int word = 0; word < words; ++word) {
        for (int count = letters(random); count > 0; --count) {
            line += QChar(letter(random));
        }
        line += u' ';
    }
    return line;
}

struct Window {
    QRectF frame;
    QColor paper;
    QColor ink;
    QFontDatabase::SystemFont font;
};

void paintWindow(QPainter &painter, const Window &window, double unit, std::mt19937 &random)
{
    const QRectF &frame = window.frame;
    for (int shadow = 12; shadow > 0; --shadow) {
        painter.fillRect(frame.adjusted(-shadow, -shadow / 2.0, shadow, shadow * 1.5), QColor(0, 0, 0, 9));
    }
    painter.fillRect(frame, window.paper);
    const QRectF title(frame.topLeft(), QSizeF(frame.width(), 32 * unit));
    QLinearGradient shine(title.topLeft(), title.bottomLeft());
    shine.setColorAt(0, window.paper.darker(104));
    shine.setColorAt(1, window.paper.darker(118));
    painter.fillRect(title, shine);
    QFont font = QFontDatabase::systemFont(window.font);
    font.setPixelSize(static_cast<int>(13 * unit));
    painter.setFont(font);
    painter.setPen(window.ink);
    painter.drawText(title, Qt::AlignCenter, lineOfText(random, 4));
    painter.setClipRect(frame);
    std::uniform_int_distribution<int> words(2, 18);
    std::uniform_int_distribution<int> hue(0, 359);
    for (double y = title.bottom() + 24 * unit; y < frame.bottom(); y += 19 * unit) {
        painter.setPen(words(random) > 12 ? QColor::fromHsv(hue(random), 140, 170) : window.ink);
        painter.drawText(QPointF(frame.left() + 14 * unit * (1 + words(random) % 3), y),
                         lineOfText(random, words(random)));
    }
    painter.setClipping(false);
}

} // namespace

QImage desktopPicture(QSize size)
{
    QImage picture = wallpaper(size);
    const double unit = size.height() / 1080.0;
    const double width = size.width();
    const double height = size.height();
    std::mt19937 random(7);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QColor light(252, 252, 252);
    const QColor dark(36, 39, 46);
    const std::array windows{
        Window{
            {width * 0.04, height * 0.10, width * 0.42, height * 0.70}, light, Qt::black, QFontDatabase::GeneralFont},
        Window{
            {width * 0.38, height * 0.22, width * 0.34, height * 0.62}, dark, Qt::lightGray, QFontDatabase::FixedFont},
        Window{{width * 0.66, height * 0.08, width * 0.22, height * 0.40},
               light,
               Qt::darkGray,
               QFontDatabase::GeneralFont},
    };
    for (const Window &window : windows) {
        paintWindow(painter, window, unit, random);
    }
    painter.fillRect(QRectF(0, 0, width, 28 * unit), QColor(20, 20, 24, 215));
    painter.setPen(Qt::white);
    painter.drawText(QPointF(16 * unit, 20 * unit), lineOfText(random, 9));
    return picture;
}

} // namespace lumenfold::bench

#include "app/theme/Symbol.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <array>

namespace lumenfold::test {
namespace {

constexpr std::array allSymbols{
    Symbol::xmark,
    Symbol::xmarkCircleFill,
    Symbol::pinFill,
    Symbol::chevronUp,
    Symbol::chevronDown,
    Symbol::checkmarkCircleFill,
    Symbol::magnifyingGlass,
    Symbol::photo,
    Symbol::arrowUpRightSquare,
    Symbol::exclamationmarkTriangleFill,
    Symbol::gearshape,
    Symbol::squareOnSquare,
    Symbol::personCircle,
    Symbol::arrowUturnBackward,
    Symbol::folder,
    Symbol::personCropCircleBadgeExclamationmark,
    Symbol::checkmarkSealFill,
};

QImage painted(Symbol symbol)
{
    QImage picture(40, 40, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paintSymbol(painter, symbol, {20, 20}, 20, Qt::red);
    return picture;
}

TEST(SymbolTest, EverySymbolIsADrawingOfItsOwn)
{
    QList<QImage> seen;
    for (const Symbol symbol : allSymbols) {
        const QImage picture = painted(symbol);
        EXPECT_FALSE(seen.contains(picture));
        seen.append(picture);
        EXPECT_NE(picture.pixelFormat().alphaUsage(), QPixelFormat::IgnoresAlpha);
        QImage empty(picture.size(), picture.format());
        empty.fill(Qt::transparent);
        EXPECT_NE(picture, empty) << static_cast<int>(symbol);
    }
}

TEST(SymbolTest, AnIconIsSharpOnEveryScreen)
{
    const QIcon icon = symbolIcon(Symbol::photo, 16, Qt::blue);
    for (const int scale : {1, 2, 3}) {
        EXPECT_EQ(icon.pixmap(QSize(16, 16), scale).size(), QSize(16, 16) * scale);
    }
}

} // namespace
} // namespace lumenfold::test

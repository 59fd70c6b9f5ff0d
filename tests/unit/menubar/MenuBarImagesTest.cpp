#include "app/menubar/MenuBarImages.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

QByteArray own(const char *name)
{
    QFile file(menuBarImageFolder() + u'/' + QString::fromLatin1(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

TEST(MenuBarImages, TheIconIsTheProgramsOwnDrawing)
{
    const StatusImage image = menuBarImage();
    EXPECT_EQ(image.drawing, own("LumenFoldMenuBarTemplate.svg"));
    EXPECT_FALSE(image.drawing.isEmpty());
    EXPECT_TRUE(image.isTemplate);
}

TEST(MenuBarImages, WithoutItThereAreScissors)
{
    const QTemporaryDir empty;
    const StatusImage image = menuBarImage(empty.path());
    EXPECT_EQ(image.drawing, own("scissors.svg"));
    EXPECT_FALSE(image.drawing.isEmpty());
    EXPECT_TRUE(image.isTemplate);
    EXPECT_EQ(image.accessibilityDescription, QStringLiteral("LumenFold"));
}

TEST(MenuBarImages, TheDotBesideTheEntryIsOrangeInTheMiddleOfItsPicture)
{
    const QImage image = updateDotImage();
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(14, 14));
    const double scale = image.devicePixelRatio();
    const auto at = [&](double x, double y) {
        return image.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
    };
    EXPECT_EQ(at(7, 7).alpha(), 235);
    EXPECT_NEAR(at(7, 7).red(), 255, 1);
    EXPECT_NEAR(at(7, 7).green(), 149, 1);
    EXPECT_NEAR(at(7, 7).blue(), 0, 1);
    EXPECT_EQ(at(4.2, 7).alpha(), 235);
    EXPECT_EQ(at(9.7, 7).alpha(), 235);
    EXPECT_EQ(at(2.9, 7).alpha(), 0);
    EXPECT_EQ(at(11, 7).alpha(), 0);
    EXPECT_EQ(at(7, 2.9).alpha(), 0);
    EXPECT_EQ(at(7, 11).alpha(), 0);
}

} // namespace
} // namespace lumenfold::test

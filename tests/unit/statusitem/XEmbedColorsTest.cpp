#include "platform/statusitem/xembed/TraySelection.h"
#include "platform/statusitem/xembed/XEmbedIcon.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(XEmbedColors, TheTraysFirstColourIsItsWriting)
{
    EXPECT_EQ(trayForeground({0xFFFF, 0x8000, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), QColor::fromRgba64(0xFFFF, 0x8000, 0));
    EXPECT_FALSE(trayForeground({0xFFFF, 0x8000}));
    EXPECT_FALSE(trayForeground({}));
    // Numbers that are none of a colour do no harm.
    EXPECT_EQ(trayForeground({0x1FFFF, 0xFFFFFFFF, 0x10000}), QColor::fromRgba64(0xFFFF, 0xFFFF, 0));
}

TEST(XEmbedColors, WritingStandsOutFromItsGround)
{
    QImage ground(24, 24, QImage::Format_RGB32);
    for (const QColor &light : {QColor(Qt::white), QColor(222, 221, 218), QColor(Qt::yellow)}) {
        ground.fill(light);
        EXPECT_EQ(writingOn(ground), QColor(Qt::black));
    }
    for (const QColor &dark : {QColor(Qt::black), QColor(48, 48, 48), QColor(Qt::blue)}) {
        ground.fill(dark);
        EXPECT_EQ(writingOn(ground), QColor(Qt::white));
    }
}

} // namespace
} // namespace lumenfold::test

#include "tests/components/screencapture/CaptureTest.h"
#include "tests/components/screencapture/ForeignWindow.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <algorithm>
#include <cstdlib>

namespace lumenfold::test {
namespace {

/// The largest difference of any channel of any pixel.
int largestDifference(const QImage &a, const QImage &b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                                std::abs(qBlue(one) - qBlue(other))});
        }
    }
    return largest;
}

/// What stands beneath an own window is compared with what the screen shows without the own window.
class BeneathOwnWindowsTest : public CaptureTest {
protected:
    /// The screen once it has come to rest.
    [[nodiscard]] QImage settledScreen() const
    {
        QImage last = rootPicture(server().connection());
        EXPECT_TRUE(waitFor([&] {
            return staysTrue(
                [&] {
                    const QImage now = rootPicture(server().connection());
                    const bool isSame = differingPixels(now, last) == 0;
                    last = now;
                    return isSame;
                },
                std::chrono::milliseconds(250));
        }));
        return last;
    }

    void startCompositor(CompositorKind kind)
    {
        m_compositor = std::make_unique<Compositor>(server(), kind);
        waitForBlending(server());
    }

    const QRect place{200, 150, 500, 400};

private:
    std::unique_ptr<Compositor> m_compositor;
};

TEST_F(BeneathOwnWindowsTest, ShapedWindowsShowWhatIsBehindThem)
{
    TestWindow back{server(), {.frame = QRect(100, 100, 700, 500)}};
    ForeignWindow shaped{server(), {.frame = QRect(250, 200, 200, 150), .colour = 0x2060a0}};
    shaped.setShape({QRect(0, 0, 50, 150), QRect(100, 20, 60, 60)});
    ForeignWindow gone{server(), {.frame = QRect(300, 250, 100, 100), .colour = 0xff00ff}};
    gone.setShape({});
    // What the server keeps of the parts that the shapes cut off is old, or was never seen.
    back.setPicture(knownPicture(back.frame().size(), 9));
    const QImage expected = settledScreen();
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BeneathOwnWindowsTest, BordersBelongToTheirWindows)
{
    const TestWindow back{server(), {.frame = QRect(100, 100, 700, 500)}};
    const ForeignWindow bordered{
        server(), {.frame = QRect(250, 200, 200, 150), .colour = 0x2060a0, .border = 7, .borderColour = 0x00ff00}};
    ForeignWindow shaped{
        server(), {.frame = QRect(500, 300, 100, 100), .colour = 0x806000, .border = 5, .borderColour = 0xffffff}};
    shaped.setShape({QRect(-5, -5, 60, 110)});
    const QImage expected = settledScreen();
    EXPECT_EQ(expected.pixelColor(244, 210), QColor(0, 255, 0));
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BeneathOwnWindowsTest, WindowsThatStickOutOfTheScreenStayWhereTheyAre)
{
    const TestWindow back{server(), {.frame = QRect(-150, -120, 700, 500)}};
    const TestWindow right{server(), {.frame = QRect(1000, 600, 700, 500)}};
    const QImage expected = settledScreen();
    const auto upper = showOwnWindow(QRect(0, 0, 300, 200), Qt::red);
    const auto lower = showOwnWindow(QRect(1100, 700, 180, 100), Qt::green);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BeneathOwnWindowsTest, TransparencyCountsForNothingWithoutACompositingManager)
{
    const TestWindow back{server(), {.frame = QRect(100, 100, 700, 500)}};
    ForeignWindow glass{server(), {.frame = QRect(250, 200, 200, 150), .depth = 32, .colour = 0x80402010}};
    glass.setOpacity(0.5);
    const QImage expected = settledScreen();
    EXPECT_EQ(expected.pixelColor(300, 250), QColor(0x40, 0x20, 0x10));
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BeneathOwnWindowsTest, TransparentWindowsAreBlendedAsACompositingManagerDoes)
{
    startCompositor(CompositorKind::plain);
    const TestWindow back{server(), {.frame = QRect(100, 100, 700, 500)}};
    const ForeignWindow glass{server(), {.frame = QRect(250, 200, 200, 150), .depth = 32, .colour = 0x80402010}};
    const ForeignWindow clear{server(), {.frame = QRect(300, 250, 300, 250), .depth = 32, .colour = 0x00000000}};
    const QImage expected = settledScreen();
    ASSERT_NE(expected.pixelColor(300, 220), QColor(0x40, 0x20, 0x10)) << "nothing was blended";
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BeneathOwnWindowsTest, WindowsFadedByTheUserAreBlendedAsACompositingManagerDoes)
{
    startCompositor(CompositorKind::plain);
    const TestWindow back{server(), {.frame = QRect(100, 100, 700, 500)}};
    ForeignWindow faded{server(), {.frame = QRect(250, 200, 200, 150), .colour = 0xffffff}};
    faded.setOpacity(0.4);
    const QImage expected = settledScreen();
    ASSERT_NE(expected.pixelColor(300, 250), QColor(Qt::white)) << "nothing was blended";
    const auto own = showOwnWindow(place, Qt::red);
    // Each compositing manager rounds the opacity in its own way.
    EXPECT_LE(largestDifference(takeMain(), expected), 2);
}

TEST_F(BeneathOwnWindowsTest, TheWallpaperIsTheDesktop)
{
    server().paintRoot(knownPicture(server().size(), 3));
    const TestWindow back{server(), {.frame = QRect(100, 100, 300, 300)}};
    const QImage expected = settledScreen();
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
    startCompositor(CompositorKind::plain);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BeneathOwnWindowsTest, ASmallWallpaperIsRepeated)
{
    server().paintRoot(knownPicture(QSize(64, 48), 3));
    const QImage expected = settledScreen();
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

/// Desktops without a wallpaper program.
class BareDesktopTest : public BeneathOwnWindowsTest {
protected:
    BareDesktopTest()
    {
        const XConnection &connection = server().connection();
        for (const char *name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
            xcb_delete_property(connection.get(), connection.root(), connection.atom(name));
        }
    }

    void setBackground(std::uint32_t what, std::uint32_t value) const
    {
        const XConnection &connection = server().connection();
        xcb_change_window_attributes(connection.get(), connection.root(), what, &value);
        xcb_clear_area(connection.get(), 0, connection.root(), 0, 0, 0, 0);
        connection.sync();
    }
};

TEST_F(BareDesktopTest, APlainColourIsTheDesktop)
{
    setBackground(XCB_CW_BACK_PIXEL, 0x345678);
    const QImage expected = settledScreen();
    EXPECT_EQ(expected.pixelColor(300, 300), QColor(0x34, 0x56, 0x78));
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

TEST_F(BareDesktopTest, ATileIsTheDesktop)
{
    const XConnection &connection = server().connection();
    const xcb_pixmap_t tile = pixmapOf(connection, knownPicture(QSize(16, 8), 4));
    setBackground(XCB_CW_BACK_PIXMAP, tile);
    xcb_free_pixmap(connection.get(), tile);
    const QImage expected = settledScreen();
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
    EXPECT_TRUE(samePicture(takePartOfMain(QRect(333, 222, 100, 90)), expected.copy(333, 222, 100, 90)));
}

TEST_F(BareDesktopTest, TheCompositingManagersOwnColourIsTheDesktop)
{
    setBackground(XCB_CW_BACK_PIXEL, 0x345678);
    startCompositor(CompositorKind::plain);
    const ForeignWindow other{server(), {.frame = QRect(600, 300, 300, 200), .colour = 0x2060a0}};
    const QImage expected = settledScreen();
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), expected));
}

} // namespace
} // namespace lumenfold::test

#include "tests/components/screencapture/CaptureTest.h"

#include "platform/image/EncodingPool.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QCursor>
#include <QFile>
#include <QThreadPool>

namespace lumenfold::test {
namespace {

/// How many pictures' memory a process has in its hands.
qsizetype picturesMappedBy(qint64 process)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(process));
    return maps.open(QIODevice::ReadOnly) ? maps.readAll().count("LumenFold picture") : -1;
}

qsizetype picturesMappedBy(const XServer &server)
{
    return picturesMappedBy(server.pid());
}

/// One window of another program with a known picture, over all of the screen.
class PictureTest : public CaptureTest {
protected:
    const QImage known = knownPicture(server().size());
    const TestWindow window{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = known}};
};

TEST_F(PictureTest, IsTheScreenPixelByPixel)
{
    const QImage picture = takeMain();
    EXPECT_TRUE(samePicture(picture, known));
    EXPECT_EQ(picture.format(), QImage::Format_RGB32);
    EXPECT_EQ(picture.devicePixelRatio(), 1);
}

TEST_F(PictureTest, IsTheSameWhenItWasExpected)
{
    const Screen screen = *screens().main();
    manager().expectCapture(screen.displayID);
    backgroundPool().waitForDone();
    const QImage first = takeMain();
    EXPECT_TRUE(samePicture(first, known));
    // What was prepared is used once.
    EXPECT_TRUE(samePicture(takeMain(), known));
    EXPECT_TRUE(samePicture(first, known));
}

TEST_F(PictureTest, MayBeAnotherThanWasExpected)
{
    manager().expectCapture(screens().main()->displayID);
    manager().expectCapture(4711);
    backgroundPool().waitForDone();
    const QRect part(11, 7, 1003, 591);
    EXPECT_TRUE(samePicture(takePartOfMain(part), known.copy(part)));
    // Nobody waits for what is being prepared.
    manager().expectCapture(screens().main()->displayID);
    EXPECT_TRUE(samePicture(takeMain(), known));
}

TEST_F(PictureTest, ShowsTheMomentOfTheCaptureAlsoWhenTheServerWasMadeReadyBefore)
{
    manager().expectCapture(screens().main()->displayID);
    ASSERT_TRUE(waitFor([] { return picturesMappedBy(server()) == 1; }));
    const QImage other = known.mirrored();
    const TestWindow above{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = other}};
    EXPECT_TRUE(samePicture(takeMain(), other));
    EXPECT_TRUE(waitFor([] { return picturesMappedBy(server()) == 0; })) << "the server keeps nothing";
}

TEST_F(PictureTest, LeavesTheServerNothingThatNobodyTook)
{
    manager().expectCapture(screens().main()->displayID);
    ASSERT_TRUE(waitFor([] { return picturesMappedBy(server()) == 1; }));
    EXPECT_TRUE(waitFor([] { return picturesMappedBy(server()) == 0; }));
    // Of another size than what was prepared: that is given back at once.
    manager().expectCapture(screens().main()->displayID);
    ASSERT_TRUE(waitFor([] { return picturesMappedBy(server()) == 1; }));
    const QRect part(11, 7, 1003, 591);
    EXPECT_TRUE(samePicture(takePartOfMain(part), known.copy(part)));
    EXPECT_TRUE(waitFor([] { return picturesMappedBy(server()) == 0; }));
}

TEST_F(PictureTest, IsKeptNoLongerThanSomebodyHasIt)
{
    const qint64 self = QCoreApplication::applicationPid();
    EXPECT_TRUE(samePicture(takeMain(), known));
    EXPECT_TRUE(waitFor([self] { return picturesMappedBy(self) == 0; }));
    manager().expectCapture(screens().main()->displayID);
    ASSERT_TRUE(waitFor([self] { return picturesMappedBy(self) == 1; }));
    EXPECT_TRUE(waitFor([self] { return picturesMappedBy(self) == 0; }));
}

TEST_F(PictureTest, MayBeExpectedByAProgramThatEnds)
{
    manager().expectCapture(screens().main()->displayID);
    ASSERT_TRUE(waitFor([] { return picturesMappedBy(server()) == 1; }));
    destroyManager();
    EXPECT_TRUE(waitFor([] { return picturesMappedBy(server()) == 0; }));
}

TEST_F(PictureTest, IsTheSameWithoutSharedMemory)
{
    manager().avoidSharedMemory();
    EXPECT_TRUE(samePicture(takeMain(), known));
    const QRect part(11, 7, 1003, 591);
    EXPECT_TRUE(samePicture(takePartOfMain(part), known.copy(part)));
}

TEST_F(PictureTest, IsOpaqueToTheLastByte)
{
    const QImage picture = takeMain();
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            ASSERT_EQ(qAlpha(line[x]), 255) << x << ", " << y;
        }
    }
}

TEST_F(PictureTest, IsAPartOfTheScreen)
{
    for (const QRect &part : {QRect(0, 0, 100, 100), QRect(300, 200, 640, 480), QRect(1278, 798, 2, 2),
                              QRect(1, 1, 1278, 798), QRect(40, 20, 2, 600)}) {
        EXPECT_TRUE(samePicture(takePartOfMain(part), known.copy(part)));
    }
}

TEST_F(PictureTest, CutsFractionalAreasAtWholePixels)
{
    // As the capture service asks: the source in points, the size truncated.
    const Rect area{10.3, 20.4, 100.4, 50.6};
    const StreamConfiguration configuration{.sourceRect = area,
                                            .width = static_cast<int>(area.width * scale()),
                                            .height = static_cast<int>(area.height * scale()),
                                            .showsCursor = false,
                                            .capturesAudio = false};
    const auto picture = take(filterFor(*screens().main()), configuration);
    ASSERT_TRUE(picture);
    const QPoint corner(qRound(area.x * scale()), qRound(area.y * scale()));
    EXPECT_TRUE(samePicture(*picture, known.copy(QRect(corner, QSize(configuration.width, configuration.height)))));
}

TEST_F(PictureTest, IsBlackOutsideTheScreen)
{
    const QRect part(-30, 700, 200, 200);
    QImage expected(part.size(), QImage::Format_RGB32);
    expected.fill(Qt::black);
    const QImage seen = known.copy(QRect(0, 700, 170, 100));
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) {
            expected.setPixel(x + 30, y, seen.pixel(x, y));
        }
    }
    EXPECT_TRUE(samePicture(takePartOfMain(part), expected));

    QImage black(50, 50, QImage::Format_RGB32);
    black.fill(Qt::black);
    EXPECT_TRUE(samePicture(takePartOfMain(QRect(5000, 5000, 50, 50)), black));
}

TEST_F(PictureTest, IsScaledSmoothlyWhenAnotherSizeIsAskedFor)
{
    StreamConfiguration doubled = wholeOf(*screens().main());
    doubled.width *= 2;
    doubled.height *= 2;
    const auto picture = take(filterFor(*screens().main()), doubled);
    ASSERT_TRUE(picture);
    const QImage expected =
        known.scaled(doubled.width, doubled.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    EXPECT_TRUE(samePicture(*picture, expected.convertToFormat(QImage::Format_RGB32)));
}

TEST_F(PictureTest, LeavesThePointerOut)
{
    const QPoint place(640, 400);
    const xcb_connection_t *xcb = server().connection().get();
    xcb_warp_pointer(const_cast<xcb_connection_t *>(xcb), XCB_NONE, server().connection().root(), 0, 0, 0, 0,
                     static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()));
    server().connection().sync();
    EXPECT_TRUE(samePicture(takeMain(), known));
    EXPECT_TRUE(samePicture(takePartOfMain(QRect(600, 380, 80, 40)), known.copy(600, 380, 80, 40)));
}

TEST_F(PictureTest, ShowsOwnWindowsUnlessTheyAreExcluded)
{
    const auto own = showOwnWindow(QRect(100, 100, 200, 100), Qt::red);
    ContentFilter filter = filterFor(*screens().main());
    filter.excludingApplications.clear();
    const auto picture = take(filter, partOfMain(QRect(100, 100, 200, 100)));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(picture->pixelColor(199, 99), QColor(Qt::red));
}

TEST_F(PictureTest, RefusesSizesThatAreNone)
{
    const auto picture = take(filterFor(*screens().main()), {.width = 0, .height = 10});
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().domain, QString::fromLatin1(captureErrorDomain));
    EXPECT_EQ(picture.error().code, static_cast<int>(CaptureErrorCode::invalidSize));
}

TEST_F(PictureTest, ListsDisplaysInPointsAndThisProcess)
{
    const auto content = QCoro::waitFor(manager().shareableContent({}));
    ASSERT_TRUE(content);
    const Screen main = *screens().main();
    ASSERT_EQ(content->displays.size(), 1U);
    EXPECT_EQ(content->displays.front(),
              (ShareableDisplay{.displayID = main.displayID, .width = 1280 / scale(), .height = 800 / scale()}));
    ASSERT_FALSE(content->applications.empty());
    EXPECT_EQ(content->applications.front().processID, QCoreApplication::applicationPid());
}

} // namespace
} // namespace lumenfold::test

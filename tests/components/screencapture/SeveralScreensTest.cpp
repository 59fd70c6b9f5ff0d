#include "tests/components/screencapture/CaptureTest.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <vector>

namespace lumenfold::test {
namespace {

/// The toolkit hears of screens by itself; until it does, it puts windows where the screens were.
bool toolkitKnows(const std::vector<QRect> &frames)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    return std::ranges::is_permutation(frames, screens, {}, {}, [](const QScreen *screen) {
        return QRect(screen->geometry().topLeft(), screen->size() * screen->devicePixelRatio());
    });
}

/// Two screens of different size and height on one server.
class SeveralScreensTest : public CaptureTest {
protected:
    SeveralScreensTest()
    {
        server().setMonitors({{.name = "left", .frame = left}, {.name = "right", .frame = right, .primary = true}});
        EXPECT_TRUE(waitFor([this] { return screens().all().size() == 2 && toolkitKnows({left, right}); }));
    }

    ~SeveralScreensTest() override
    {
        server().setMonitors({});
        EXPECT_TRUE(waitFor(
            [this] { return screens().all().size() == 1 && toolkitKnows({QRect(QPoint(0, 0), server().size())}); }));
    }

    const QRect left{0, 100, 480, 640};
    const QRect right{480, 0, 800, 600};
    const QImage known = knownPicture(server().size());
    const TestWindow window{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = known}};
};

TEST_F(SeveralScreensTest, EachIsCapturedAlone)
{
    const auto all = screens().all();
    const auto main = take(filterFor(all.at(0)), wholeOf(all.at(0)));
    const auto other = take(filterFor(all.at(1)), wholeOf(all.at(1)));
    ASSERT_TRUE(main);
    ASSERT_TRUE(other);
    EXPECT_TRUE(samePicture(*main, known.copy(right)));
    EXPECT_TRUE(samePicture(*other, known.copy(left)));
}

TEST_F(SeveralScreensTest, PartsCountFromTheirScreensCorner)
{
    const Screen other = screens().all().at(1);
    StreamConfiguration configuration = partOfMain(QRect(10, 20, 100, 60));
    const auto picture = take(filterFor(other), configuration);
    ASSERT_TRUE(picture);
    EXPECT_TRUE(samePicture(*picture, known.copy(left.x() + 10, left.y() + 20, 100, 60)));
}

TEST_F(SeveralScreensTest, AnAreaThatSticksOutShowsNothingOfTheNeighbour)
{
    const Screen other = screens().all().at(1);
    const auto picture = take(filterFor(other), partOfMain(QRect(400, 0, 160, 60)));
    ASSERT_TRUE(picture);
    EXPECT_TRUE(samePicture(picture->copy(0, 0, 80, 60), known.copy(400, 100, 80, 60)));
    QImage black(80, 60, QImage::Format_RGB32);
    black.fill(Qt::black);
    EXPECT_TRUE(samePicture(picture->copy(80, 0, 80, 60), black));
}

TEST_F(SeveralScreensTest, OwnWindowsAcrossTheEdgeAreLeftOutOnBoth)
{
    const auto own = showOwnWindow(QRect(440, 200, 80, 80), Qt::red);
    for (const Screen &screen : screens().all()) {
        const auto picture = take(filterFor(screen), wholeOf(screen));
        ASSERT_TRUE(picture);
        const QRect native = screens().space().screen(screen.displayID)->native;
        EXPECT_TRUE(samePicture(*picture, known.copy(native)));
    }
}

TEST_F(SeveralScreensTest, TheOtherScreenCanBeAskedForAtTheMainScreensScale)
{
    // As a full screen capture does when the main screen has twice the scale.
    const Screen other = screens().all().at(1);
    StreamConfiguration configuration = wholeOf(other);
    configuration.width *= 2;
    configuration.height *= 2;
    const auto picture = take(filterFor(other), configuration);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->size(), left.size() * 2);
}

TEST_F(SeveralScreensTest, AScreenThatVanishedIsAnErrorAndNoRefusal)
{
    const Screen other = screens().all().at(1);
    server().setMonitors({{.name = "right", .frame = right, .primary = true}});
    ASSERT_TRUE(waitFor([this] { return screens().all().size() == 1; }));
    const auto picture = take(filterFor(other), wholeOf(other));
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().domain, QString::fromLatin1(captureErrorDomain));
    EXPECT_NE(picture.error().domain, QString::fromLatin1(streamErrorDomain));
    EXPECT_EQ(picture.error().code, static_cast<int>(CaptureErrorCode::displayGone));
}

TEST_F(SeveralScreensTest, AScreenThatVanishesMeanwhileEndsTheCaptureOneWayOrTheOther)
{
    const Screen other = screens().all().at(1);
    for (int round = 0; round < 5; ++round) {
        server().setMonitors({{.name = "right", .frame = right, .primary = true}});
        const auto picture = take(filterFor(other), wholeOf(other));
        if (picture) {
            EXPECT_EQ(picture->size(), left.size());
        } else {
            EXPECT_EQ(picture.error().domain, QString::fromLatin1(captureErrorDomain));
        }
        ASSERT_TRUE(waitFor([this] { return screens().all().size() == 1; }));
        server().setMonitors({{.name = "left", .frame = left}, {.name = "right", .frame = right, .primary = true}});
        ASSERT_TRUE(waitFor([this] { return screens().all().size() == 2 && toolkitKnows({left, right}); }));
    }
}

} // namespace
} // namespace lumenfold::test

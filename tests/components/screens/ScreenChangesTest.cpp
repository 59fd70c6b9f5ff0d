#include "tests/components/screens/ScreensTest.h"

#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/Wait.h"

namespace lumenfold::test {
namespace {

class ScreenChangesTest : public ScreensTest {
protected:
    void changeMode(const QStringList &arguments) const
    {
        Process xrandr(
            {.program = QStringLiteral("xrandr"), .arguments = arguments, .environment = server().clientEnvironment()});
        ASSERT_EQ(xrandr.waitForExit(), (Process::Exit{.status = 0}));
    }
};

TEST_F(ScreenChangesTest, ScreensThatComeAndGoAreTold)
{
    plugInTwo();
    EXPECT_TRUE(waitFor([this] { return changes() > 0; }));
    const int before = changes();
    plugInOne();
    EXPECT_TRUE(waitFor([&] { return changes() > before; }));
}

TEST_F(ScreenChangesTest, AScreenThatMovesOrGrowsIsTold)
{
    plugInTwo();
    ASSERT_TRUE(waitFor([this] { return changes() > 0; }));
    const int before = changes();
    const QRect taller(0, 0, 480, 800);
    server().setMonitors({{.name = "left", .frame = taller}, {.name = "right", .frame = right, .primary = true}});
    EXPECT_TRUE(waitFor([&] { return changes() > before && screens().space().screens().back().native == taller; }));
}

TEST_F(ScreenChangesTest, AnotherMainScreenIsTold)
{
    plugInTwo();
    const DisplayID other = screenAt(left).displayID;
    server().setMonitors({{.name = "left", .frame = left, .primary = true}, {.name = "right", .frame = right}});
    EXPECT_TRUE(waitFor([&] { return screens().main()->displayID == other; }));
    EXPECT_EQ(screens().main()->frame.origin(), (Point{0, 0}));
    EXPECT_GT(screens().all().back().frame.minX(), 0);
}

TEST_F(ScreenChangesTest, AnotherResolutionIsTold)
{
    const QString mode = QStringLiteral("800x600");
    changeMode({QStringLiteral("--newmode"), mode, QStringLiteral("1"), QStringLiteral("800"), QStringLiteral("0"),
                QStringLiteral("0"), QStringLiteral("800"), QStringLiteral("600"), QStringLiteral("0"),
                QStringLiteral("0"), QStringLiteral("600")});
    changeMode({QStringLiteral("--addmode"), QStringLiteral("screen"), mode});
    changeMode({QStringLiteral("--output"), QStringLiteral("screen"), QStringLiteral("--mode"), mode});
    const QRect small(0, 0, 800, 600);
    EXPECT_TRUE(waitFor([&] { return changes() > 0 && screens().space().screens().front().native == small; }));
    const double scale = screens().main()->backingScale;
    EXPECT_EQ(screens().main()->frame, (Rect{0, 0, 800 / scale, 600 / scale}));

    changeMode(
        {QStringLiteral("--output"), QStringLiteral("screen"), QStringLiteral("--mode"), QStringLiteral("1280x800")});
    EXPECT_TRUE(waitFor([&] { return screens().space().screens().front().native == whole; }));
}

TEST_F(ScreenChangesTest, NothingIsToldWhenNothingChanged)
{
    EXPECT_TRUE(staysTrue([this] { return changes() == 0; }, std::chrono::milliseconds(200)));
    // A property that has nothing to do with screens.
    server().connection().setCardinals(server().connection().root(), "_NET_WORKAREA", "CARDINAL", {0, 0, 1280, 800});
    server().connection().sync();
    EXPECT_TRUE(staysTrue([this] { return changes() == 0; }, std::chrono::milliseconds(200)));
    xcb_delete_property(server().connection().get(), server().connection().root(),
                        server().connection().atom("_NET_WORKAREA"));
    server().connection().sync();
}

} // namespace
} // namespace lumenfold::test

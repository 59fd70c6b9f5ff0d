#include "tests/components/panels/PanelDesk.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <set>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class PanelAnimationTest : public PanelDesk {
protected:
    /// Runs until the condition holds, and notes every place of the window that the server knew on the way.
    std::vector<QRect> placesUntil(xcb_window_t window, const std::function<bool()> &condition)
    {
        std::vector<QRect> places{connection().frameOf(window)};
        EXPECT_TRUE(waitFor([&] {
            settle();
            const QRect place = connection().frameOf(window);
            if (place != places.back()) {
                places.push_back(place);
            }
            return condition();
        }));
        return places;
    }
};

TEST_F(PanelAnimationTest, slidesInStepsToExactlyTheEnd)
{
    const auto panel = showPanel({24, 24, 120, 90}, Qt::red, {.title = u"sliding"_s});
    const xcb_window_t window = windowOf(u"sliding"_s);
    const Rect end{324.5, 200, 120, 90};
    int completed = 0;
    panel->animate({.frame = end, .duration = 200ms, .onCompleted = [&] { ++completed; }});
    const auto places = placesUntil(window, [&] { return completed > 0; });
    settle();
    EXPECT_EQ(completed, 1);
    EXPECT_EQ(panel->frame(), end);
    EXPECT_EQ(connection().frameOf(window), pixelsOf(end));
    EXPECT_GT(places.size(), 3U) << "it jumped";
    for (const QRect &place : places) {
        EXPECT_EQ(place.size(), pixelsOf(end).size()) << "its size changed on the way";
    }
}

TEST_F(PanelAnimationTest, takesItsTimeAndNotMuchMore)
{
    const auto panel = showPanel({24, 24, 120, 90});
    QElapsedTimer time;
    time.start();
    bool completed = false;
    panel->animate({.frame = Rect{200, 24, 120, 90}, .duration = 200ms, .onCompleted = [&] { completed = true; }});
    EXPECT_TRUE(waitFor([&] { return completed; }));
    EXPECT_GE(time.elapsed(), 200);
    EXPECT_LT(time.elapsed(), 2000);
}

TEST_F(PanelAnimationTest, growsWithItsView)
{
    const auto panel = showPanel({24, 24, 60, 45}, Qt::red, {.title = u"growing"_s});
    const Rect end{24, 24, 240, 180};
    bool completed = false;
    panel->animate({.frame = end, .duration = 150ms, .onCompleted = [&] { completed = true; }});
    EXPECT_TRUE(waitFor([&] { return completed; }));
    settle();
    EXPECT_EQ(connection().frameOf(windowOf(u"growing"_s)), pixelsOf(end));
    EXPECT_TRUE(becomes({250, 190}, Qt::red));
}

TEST_F(PanelAnimationTest, fadesInUnderACompositor)
{
    startCompositor(CompositorKind::plain);
    const auto panel = makePanel({24, 24, 120, 90}, {.title = u"fading"_s});
    panel->setContentView(std::make_unique<ColouredView>(Qt::red));
    panel->setAlpha(0);
    panel->orderFrontRegardless();
    settle();
    const xcb_window_t window = windowOf(u"fading"_s);
    EXPECT_EQ(connection().cardinals(window, "_NET_WM_WINDOW_OPACITY"), QList<quint32>({0}));
    bool completed = false;
    panel->animate({.alpha = 1, .duration = 180ms, .onCompleted = [&] { completed = true; }});
    std::set<quint32> opacities;
    EXPECT_TRUE(waitFor([&] {
        settle();
        opacities.insert(connection().cardinals(window, "_NET_WM_WINDOW_OPACITY").value(0));
        return completed;
    }));
    settle();
    opacities.insert(connection().cardinals(window, "_NET_WM_WINDOW_OPACITY").value(0));
    EXPECT_GT(opacities.size(), 3U);
    EXPECT_EQ(*opacities.rbegin(), 0xFFFFFFFFU);
    EXPECT_EQ(panel->alpha(), 1);
    EXPECT_TRUE(becomes({60, 60}, Qt::red));
}

TEST_F(PanelAnimationTest, aReplacedAnimationDoesNotComplete)
{
    const auto panel = showPanel({24, 24, 120, 90}, Qt::red, {.title = u"replaced"_s});
    bool first = false;
    bool second = false;
    panel->animate({.frame = Rect{300, 24, 120, 90}, .duration = 100ms, .onCompleted = [&] { first = true; }});
    panel->animate({.frame = Rect{24, 200, 120, 90}, .duration = 150ms, .onCompleted = [&] { second = true; }});
    EXPECT_TRUE(waitFor([&] { return second; }));
    settle();
    EXPECT_FALSE(first);
    EXPECT_EQ(connection().frameOf(windowOf(u"replaced"_s)), pixelsOf({24, 200, 120, 90}));
}

TEST_F(PanelAnimationTest, aPanelThatGoesTakesItsCompletionWithIt)
{
    auto panel = showPanel({24, 24, 120, 90});
    const auto witness = showPanel({300, 24, 120, 90});
    bool completed = false;
    bool witnessed = false;
    panel->animate({.alpha = 0, .duration = 30ms, .onCompleted = [&] { completed = true; }});
    witness->animate({.alpha = 0.5, .duration = 90ms, .onCompleted = [&] { witnessed = true; }});
    panel.reset();
    EXPECT_TRUE(waitFor([&] { return witnessed; }));
    EXPECT_FALSE(completed);
}

TEST_F(PanelAnimationTest, completionsMayDestroyPanels)
{
    auto first = showPanel({24, 24, 120, 90});
    auto second = showPanel({300, 24, 120, 90});
    int completed = 0;
    const auto destroyBoth = [&] {
        ++completed;
        first.reset();
        second.reset();
    };
    first->animate({.alpha = 0, .duration = 30ms, .onCompleted = destroyBoth});
    second->animate({.alpha = 0, .duration = 30ms, .onCompleted = destroyBoth});
    EXPECT_TRUE(waitFor([&] { return completed > 0; }));
    settle();
    EXPECT_EQ(completed, 1);
}

TEST_F(PanelAnimationTest, nothingWakesTheProgramWhilePanelsRest)
{
    const auto panel = showPanel({24, 24, 120, 90});
    bool completed = false;
    panel->animate({.frame = Rect{100, 24, 120, 90}, .duration = 50ms, .onCompleted = [&] { completed = true; }});
    EXPECT_TRUE(waitFor([&] { return completed; }));
    settle();
    int wakeUps = 0;
    const auto counting = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                                           QAbstractEventDispatcher::instance(), [&] { ++wakeUps; });
    // One wait that nothing but its own timer ends.
    QEventLoop loop;
    QTimer::singleShot(400ms, &loop, &QEventLoop::quit);
    loop.exec();
    QObject::disconnect(counting);
    EXPECT_LE(wakeUps, 3);
}

} // namespace
} // namespace lumenfold::test

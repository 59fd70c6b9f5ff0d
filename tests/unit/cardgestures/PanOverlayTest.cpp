#include "cards/PanOverlay.h"

#include "tests/support/fakes/FakeScreens.h"
#include "tests/unit/cardgestures/OverlayEvents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::IsEmpty;

class PanOverlayTest : public ::testing::Test {
protected:
    PanOverlayTest()
    {
        m_overlay.resize(200, 100);
        m_overlay.apply({.onBegan = [this] { m_told.append(u"began"_s); },
                         .onChanged = [this](Size way) { m_told.append(u"%1 %2"_s.arg(way.width).arg(way.height)); },
                         .onEnded = [this] { m_told.append(u"ended"_s); },
                         .onDoubleClick = [this] { m_told.append(u"double"_s); }});
        m_overlay.show();
    }

    void moveTo(Point place) { sendMouse(m_overlay, QEvent::MouseMove, {50, 50}, place); }

    FakeScreens m_screens;
    PanOverlayView m_overlay{m_screens};
    QStringList m_told;
};

TEST_F(PanOverlayTest, tellsTheWholeWaySinceThePressAndUpIsMore)
{
    EXPECT_TRUE(sendMouse(m_overlay, QEvent::MouseButtonPress, {50, 50}, pressed));
    moveTo({305, 400});
    moveTo({312, 393});
    moveTo({290, 420});
    sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed);

    EXPECT_EQ(m_told, QStringList({u"began"_s, u"5 0"_s, u"12 -7"_s, u"-10 20"_s, u"ended"_s}));
}

TEST_F(PanOverlayTest, aClickIsADragThatGoesNowhere)
{
    sendMouse(m_overlay, QEvent::MouseButtonPress, {50, 50}, pressed);
    sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed);
    EXPECT_EQ(m_told, QStringList({u"began"_s, u"ended"_s}));
}

TEST_F(PanOverlayTest, thePointerThatOnlyPassesTellsNothing)
{
    m_overlay.setMouseTracking(true);
    moveTo({305, 400});
    sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed);
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(PanOverlayTest, otherButtonsBelongToWhatLiesBeneath)
{
    EXPECT_FALSE(sendMouse(m_overlay, QEvent::MouseButtonPress, {50, 50}, pressed, Qt::RightButton));
    EXPECT_FALSE(sendMouse(m_overlay, QEvent::MouseButtonDblClick, {50, 50}, pressed, Qt::RightButton));
    EXPECT_THAT(m_told, IsEmpty());

    sendMouse(m_overlay, QEvent::MouseButtonPress, {50, 50}, pressed);
    sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed, Qt::RightButton);
    EXPECT_EQ(m_told, QStringList(u"began"_s));
}

TEST_F(PanOverlayTest, theSecondPressOfADoubleClickMayBeginADragToo)
{
    sendMouse(m_overlay, QEvent::MouseButtonDblClick, {50, 50}, pressed);
    moveTo({301, 400});
    sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed);
    EXPECT_EQ(m_told, QStringList({u"began"_s, u"double"_s, u"1 0"_s, u"ended"_s}));
}

TEST_F(PanOverlayTest, aViewThatIsTakenOffTheScreenEndsItsDrag)
{
    sendMouse(m_overlay, QEvent::MouseButtonPress, {50, 50}, pressed);
    m_overlay.hide();
    EXPECT_EQ(m_told, QStringList({u"began"_s, u"ended"_s}));
    sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed);
    EXPECT_EQ(m_told.size(), 2);
}

TEST_F(PanOverlayTest, aReleaseThatSomebodyElseGotEndsTheDragLater)
{
    sendMouse(m_overlay, QEvent::MouseButtonPress, {50, 50}, pressed);
    QMouseEvent move(QEvent::MouseMove, QPointF(50, 50), QPointF(50, 50), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_overlay, &move);
    EXPECT_EQ(m_told, QStringList({u"began"_s, u"ended"_s}));
}

TEST_F(PanOverlayTest, nobodyNeedBeTold)
{
    m_overlay.apply({});
    sendMouse(m_overlay, QEvent::MouseButtonDblClick, {50, 50}, pressed);
    moveTo({301, 400});
    EXPECT_TRUE(sendMouse(m_overlay, QEvent::MouseButtonRelease, {50, 50}, pressed));
}

} // namespace
} // namespace lumenfold::test

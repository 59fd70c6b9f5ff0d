#include "cards/ResizeOverlay.h"

#include "cards/ResizeCursor.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/unit/cardgestures/OverlayEvents.h"

#include <QCursor>
#include <QPixmap>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// In the view, y down: the handles of a card of 300 x 200.
constexpr QPointF upperLeft{60, 60};
constexpr QPointF lowerRight{344, 244};
constexpr QPointF middle{200, 150};

class ResizeOverlayTest : public ::testing::Test {
protected:
    ResizeOverlayTest()
    {
        m_window.setGeometry(50, 50, 404, 304);
        m_beneath.setGeometry(m_window.rect());
        m_overlay.setGeometry(m_window.rect());
        m_overlay.apply(overlay(22));
    }

    ResizeOverlay overlay(double grab)
    {
        return {.band = 58,
                .zones = {.cardInset = 52, .handleInset = 8, .handleGrab = grab},
                .onBegan = [this](PreviewResizeCorner corner) { m_told.append(name(corner) + u" began"_s); },
                .onChanged =
                    [this](PreviewResizeCorner corner, Size way) {
                        m_told.append(u"%1 %2 %3"_s.arg(name(corner)).arg(way.width).arg(way.height));
                    },
                .onEnded = [this] { m_told.append(u"ended"_s); }};
    }

    static QString name(PreviewResizeCorner corner)
    {
        switch (corner) {
        case PreviewResizeCorner::topLeft:
            return u"topLeft"_s;
        case PreviewResizeCorner::bottomRight:
            return u"bottomRight"_s;
        default:
            return u"another"_s;
        }
    }

    void moveTo(Point place) { sendMouse(m_overlay, QEvent::MouseMove, middle, place); }

    /// The pointer, as the toolkit sees it and as the monitors report it.
    void pointAt(QPointF place)
    {
        QCoreApplication::processEvents();
        QCursor::setPos(m_overlay.mapToGlobal(place).toPoint());
        QCoreApplication::processEvents();
        m_monitors.sendGlobal({.type = PointerEventType::mouseMoved});
    }

    [[nodiscard]] bool showsResizeCursor() const { return m_overlay.cursor().shape() == Qt::BitmapCursor; }

    FakeScreens m_screens;
    FakeEventMonitors m_monitors;
    QWidget m_window;
    QWidget m_beneath{&m_window};
    ResizeOverlayView m_overlay{m_screens, m_monitors, &m_window};
    QStringList m_told;
};

TEST_F(ResizeOverlayTest, tellsWhichCornerIsDraggedHowFar)
{
    m_window.show();
    EXPECT_TRUE(sendMouse(m_overlay, QEvent::MouseButtonPress, upperLeft + QPointF(20, 20), pressed));
    moveTo({310, 380});
    moveTo({260, 430});
    sendMouse(m_overlay, QEvent::MouseButtonRelease, upperLeft, pressed);
    EXPECT_EQ(m_told, QStringList({u"topLeft began"_s, u"topLeft 10 -20"_s, u"topLeft -40 30"_s, u"ended"_s}));

    m_told.clear();
    sendMouse(m_overlay, QEvent::MouseButtonPress, lowerRight, pressed);
    sendMouse(m_overlay, QEvent::MouseButtonRelease, lowerRight, pressed);
    EXPECT_EQ(m_told, QStringList({u"bottomRight began"_s, u"ended"_s}));
}

TEST_F(ResizeOverlayTest, aPressBesideTheCornersIsForWhatLiesBeneath)
{
    m_window.show();
    EXPECT_FALSE(sendMouse(m_overlay, QEvent::MouseButtonPress, upperLeft + QPointF(23, 0), pressed));
    EXPECT_FALSE(sendMouse(m_overlay, QEvent::MouseButtonPress, upperLeft + QPointF(0, 23), pressed));
    EXPECT_FALSE(sendMouse(m_overlay, QEvent::MouseButtonPress, upperLeft, pressed, Qt::RightButton));
    EXPECT_THAT(m_told, IsEmpty());

    EXPECT_EQ(m_window.childAt(upperLeft.toPoint() + QPoint(22, 22)), &m_overlay);
    EXPECT_EQ(m_window.childAt(upperLeft.toPoint() - QPoint(22, 22)), &m_overlay);
    EXPECT_EQ(m_window.childAt(lowerRight.toPoint() + QPoint(22, 22)), &m_overlay);
    EXPECT_EQ(m_window.childAt(upperLeft.toPoint() + QPoint(24, 0)), &m_beneath);
    EXPECT_EQ(m_window.childAt(middle.toPoint()), &m_beneath);
}

TEST_F(ResizeOverlayTest, withoutAGrabAllOfItIsForWhatLiesBeneath)
{
    m_overlay.apply(overlay(0));
    m_window.show();
    EXPECT_FALSE(sendMouse(m_overlay, QEvent::MouseButtonPress, upperLeft, pressed));
    EXPECT_EQ(m_window.childAt(upperLeft.toPoint()), &m_beneath);
    EXPECT_TRUE(m_overlay.hotRegion().isEmpty());

    m_overlay.apply(overlay(22));
    EXPECT_EQ(m_window.childAt(upperLeft.toPoint()), &m_overlay);
}

TEST_F(ResizeOverlayTest, theCornersMoveWithTheSize)
{
    m_window.show();
    m_overlay.resize(504, 404);
    EXPECT_TRUE(m_overlay.hotRegion().contains(QPoint(444, 344)));
    EXPECT_FALSE(m_overlay.hotRegion().contains(lowerRight.toPoint()));
}

TEST_F(ResizeOverlayTest, theMonitorsLiveAsLongAsTheViewIsOnScreen)
{
    EXPECT_THAT(m_monitors.globalMasks(), IsEmpty());
    m_window.show();
    EXPECT_THAT(m_monitors.globalMasks(), ElementsAre(1U << 5));
    EXPECT_THAT(m_monitors.localMasks(), ElementsAre(1U << 5));
    m_window.hide();
    EXPECT_THAT(m_monitors.globalMasks(), IsEmpty());
    EXPECT_THAT(m_monitors.localMasks(), IsEmpty());
    m_window.show();
    EXPECT_THAT(m_monitors.globalMasks(), ElementsAre(1U << 5));
}

TEST_F(ResizeOverlayTest, theCursorChangesOverACornerAndBack)
{
    m_window.show();
    pointAt(upperLeft);
    EXPECT_TRUE(showsResizeCursor());
    pointAt(middle);
    EXPECT_FALSE(showsResizeCursor());
    EXPECT_EQ(m_overlay.cursor().shape(), Qt::ArrowCursor);
    pointAt(lowerRight);
    EXPECT_TRUE(showsResizeCursor());
}

TEST_F(ResizeOverlayTest, theArrowIsSetOnlyByTheViewThatOwesIt)
{
    m_window.show();
    pointAt(middle);
    m_overlay.setCursor(Qt::WhatsThisCursor);
    pointAt(middle + QPointF(1, 0));
    EXPECT_EQ(m_overlay.cursor().shape(), Qt::WhatsThisCursor);
}

TEST_F(ResizeOverlayTest, theCursorStaysWhileACornerIsDragged)
{
    m_window.show();
    sendMouse(m_overlay, QEvent::MouseButtonPress, upperLeft, pressed);
    EXPECT_TRUE(showsResizeCursor());
    pointAt(middle);
    EXPECT_TRUE(showsResizeCursor());
    m_overlay.setCursor(Qt::ArrowCursor);
    moveTo({310, 380});
    EXPECT_TRUE(showsResizeCursor());

    sendMouse(m_overlay, QEvent::MouseButtonRelease, upperLeft, pressed);
    EXPECT_EQ(m_overlay.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ResizeOverlayTest, aViewThatIsTakenOffTheScreenEndsItsDrag)
{
    m_window.show();
    sendMouse(m_overlay, QEvent::MouseButtonPress, lowerRight, pressed);
    m_window.hide();
    EXPECT_EQ(m_told, QStringList({u"bottomRight began"_s, u"ended"_s}));
}

TEST(ResizeCursor, twoDiagonalsEachMadeOnce)
{
    const QCursor falling = resizeCursor(PreviewResizeCorner::topLeft, 1);
    EXPECT_EQ(resizeCursor(PreviewResizeCorner::bottomRight, 1), falling);
    const QCursor rising = resizeCursor(PreviewResizeCorner::topRight, 1);
    EXPECT_EQ(resizeCursor(PreviewResizeCorner::bottomLeft, 1), rising);
    EXPECT_NE(rising, falling);
    const auto isDark = [](const QCursor &cursor, int x, int y) {
        const QColor colour = cursor.pixmap().toImage().pixelColor(x, y);
        return colour.alpha() > 200 && colour.lightness() < 100;
    };
    // The tips of the falling arrow, and those of the rising one.
    EXPECT_TRUE(isDark(falling, 5, 5) && isDark(falling, 15, 15));
    EXPECT_FALSE(isDark(falling, 15, 5) || isDark(falling, 5, 15));
    EXPECT_TRUE(isDark(rising, 15, 5) && isDark(rising, 5, 15));
    EXPECT_FALSE(isDark(rising, 5, 5) || isDark(rising, 15, 15));
}

TEST(ResizeCursor, aBlackArrowWithAWhiteRim)
{
    const QCursor cursor = resizeCursor(PreviewResizeCorner::topLeft, 2);
    const QImage picture = cursor.pixmap().toImage();
    EXPECT_EQ(picture.size(), QSize(42, 42));
    EXPECT_EQ(cursor.hotSpot(), QPoint(21, 21));
    EXPECT_EQ(picture.pixelColor(21, 21), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(41, 0).alpha(), 0);
    // Beside the line.
    EXPECT_EQ(picture.pixelColor(24, 20), QColor(Qt::white));
}

} // namespace
} // namespace lumenfold::test

#include "capture/areaselection/SelectionView.h"

#include "app/configuration/Palette.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPaintEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold {
namespace {

constexpr Size screenSize{400, 300};

/// The 8-bit value of black at alpha 0.35.
constexpr int dimAlpha = 89;

/// Gathers what the toolkit repaints of a widget.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget &widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            region |= static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }

    QRegion region;
};

class SelectionViewTest : public ::testing::Test {
protected:
    SelectionViewTest() { makeView({}); }

    void makeView(QImage backdrop, SnapEdges edges = {})
    {
        view = std::make_unique<SelectionView>(
            SelectionView::Options{.screenSize = screenSize, .backdrop = backdrop, .snapEdges = [this, edges] {
                                       ++snapRequests;
                                       return edges;
                                   }});
        view->setAttribute(Qt::WA_TranslucentBackground);
        view->resize(static_cast<int>(screenSize.width), static_cast<int>(screenSize.height));
        QObject::connect(view.get(), &SelectionView::selected, view.get(), [this](const Rect &rect) {
            events.push_back(QStringLiteral("selected"));
            selected = rect;
        });
        QObject::connect(view.get(), &SelectionView::clicked, view.get(),
                         [this] { events.push_back(QStringLiteral("clicked")); });
        QObject::connect(view.get(), &SelectionView::cancelled, view.get(),
                         [this] { events.push_back(QStringLiteral("cancelled")); });
    }

    /// Toolkit coordinates: y down.
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, at, view->mapToGlobal(at), button, held, Qt::NoModifier);
        QApplication::sendEvent(view.get(), &event);
    }
    void press(QPointF at, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonPress, at, button, button);
    }
    void release(QPointF at, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void move(QPointF to) { send(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton); }

    /// On the offscreen platform a shown window is painted in the next turn of the event loop.
    void show()
    {
        view->show();
        QApplication::processEvents();
    }

    QImage painted()
    {
        QImage image(view->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view->render(&image, {}, {}, QWidget::DrawWindowBackground);
        return image;
    }

    std::unique_ptr<SelectionView> view;
    QStringList events;
    std::optional<Rect> selected;
    int snapRequests = 0;
};

TEST_F(SelectionViewTest, DimsTheWholeScreenAtFirst)
{
    const QImage image = painted();
    for (const QPoint at : {QPoint(0, 0), QPoint(399, 299), QPoint(200, 150)}) {
        EXPECT_EQ(image.pixel(at), qRgba(0, 0, 0, dimAlpha)) << at.x() << ", " << at.y();
    }
}

TEST_F(SelectionViewTest, ShowsTheSelectionAsAHoleWithAnOutline)
{
    press({100, 100});
    move({200, 180});
    const QImage image = painted();
    EXPECT_EQ(image.pixel(150, 140), qRgba(0, 0, 0, 0));
    EXPECT_EQ(image.pixel(102, 102), qRgba(0, 0, 0, 0));
    EXPECT_EQ(image.pixel(97, 140), qRgba(0, 0, 0, dimAlpha));
    EXPECT_EQ(image.pixel(202, 140), qRgba(0, 0, 0, dimAlpha));
    // Three quarters of the line's 1.5 points fall on each side of the edge.
    const QColor inside = image.pixelColor(100, 140);
    EXPECT_NEAR(inside.red(), palette::accentPrimary.red(), 2);
    EXPECT_NEAR(inside.green(), palette::accentPrimary.green(), 2);
    EXPECT_NEAR(inside.blue(), palette::accentPrimary.blue(), 2);
    EXPECT_NEAR(inside.alpha(), 191, 2);
    EXPECT_GT(image.pixelColor(99, 140).alpha(), 191);
}

TEST_F(SelectionViewTest, PutsTheLabelBeyondTheTopRightCorner)
{
    press({100, 100});
    move({200, 180});
    const QImage image = painted();
    const QColor accent = palette::accentPrimary;
    // Its bottom left corner is 6 points right of and above the selection's top right one.
    EXPECT_EQ(QColor(image.pixel(206, 93)), accent);
    EXPECT_EQ(image.pixel(205, 93), qRgba(0, 0, 0, dimAlpha));
    EXPECT_EQ(image.pixel(206, 94), qRgba(0, 0, 0, dimAlpha));
    int bright = 0;
    for (int x = 206; x < 280; ++x) {
        for (int y = 75; y < 94; ++y) {
            bright += qRed(image.pixel(x, y)) > 200 ? 1 : 0;
        }
    }
    EXPECT_GT(bright, 10) << "white text";
}

TEST_F(SelectionViewTest, LetsTheLabelLeaveTheScreen)
{
    press({300, 100});
    move({400, 0});
    const QImage image = painted();
    for (int x = 310; x < 398; ++x) {
        EXPECT_EQ(image.pixel(x, 50), qRgba(0, 0, 0, 0));
    }
}

TEST_F(SelectionViewTest, RepaintsNoMoreThanWhatChanged)
{
    show();
    press({50, 50});
    move({250, 250});
    QApplication::processEvents();

    PaintWatch watch(*view);
    move({260, 250});
    QApplication::processEvents();
    EXPECT_TRUE(watch.region.contains(QPoint(255, 150)));
    EXPECT_FALSE(watch.region.contains(QPoint(150, 150))) << "the middle of the hole";
    EXPECT_FALSE(watch.region.contains(QPoint(20, 20))) << "the dimming far away";
    EXPECT_FALSE(watch.region.contains(QPoint(390, 290)));
}

TEST_F(SelectionViewTest, RepaintsAllThatChanged)
{
    makeView({}, {.snapXs = {60.5, 249.25}, .snapYs = {201.5}}); // edges between pixels
    show();
    QImage kept = painted();
    press({50, 250});
    for (const QPoint to : {QPoint(250, 100), QPoint(30, 20), QPoint(60, 260), QPoint(333, 77), QPoint(330, 95)}) {
        PaintWatch watch(*view);
        move(to);
        QApplication::processEvents();
        const QRegion region = watch.region;
        ASSERT_FALSE(region.isEmpty());
        view->render(&kept, region.boundingRect().topLeft(), region, QWidget::DrawWindowBackground);
        EXPECT_EQ(kept, painted()) << to.x() << ", " << to.y();
    }
    PaintWatch watch(*view);
    release({330, 95});
    QApplication::processEvents();
    view->render(&kept, watch.region.boundingRect().topLeft(), watch.region, QWidget::DrawWindowBackground);
    EXPECT_EQ(kept, painted());
}

TEST_F(SelectionViewTest, ReportsADragWithYUpwards)
{
    press({100, 100});
    move({150, 180});
    release({150, 180});
    EXPECT_EQ(events, QStringList{QStringLiteral("selected")});
    EXPECT_EQ(selected, (Rect{100, 120, 50, 80}));
    EXPECT_EQ(view->selection().currentRect(), std::nullopt);
}

TEST_F(SelectionViewTest, AsksForEdgesAtEveryPressAndSnapsBothEnds)
{
    makeView({}, {.snapXs = {100, 200}, .snapYs = {200, 100}});
    press({105, 97});
    move({193, 205});
    release({193, 205});
    EXPECT_EQ(selected, (Rect{100, 100, 100, 100}));
    press({10, 10});
    release({10, 10});
    EXPECT_EQ(snapRequests, 2);
}

TEST_F(SelectionViewTest, AClickIsNoSelection)
{
    press({100, 100});
    release({100, 100});
    EXPECT_EQ(events, QStringList{QStringLiteral("clicked")});
}

TEST_F(SelectionViewTest, ARightClickCancelsAlsoDuringADrag)
{
    press({100, 100}, Qt::RightButton);
    EXPECT_EQ(events, QStringList{QStringLiteral("cancelled")});
    press({100, 100});
    move({200, 200});
    press({200, 200}, Qt::RightButton);
    EXPECT_EQ(events.last(), u"cancelled");
}

TEST_F(SelectionViewTest, OtherButtonsAndAReleaseOfAnEarlierPressDoNothing)
{
    press({100, 100}, Qt::MiddleButton);
    release({100, 100}, Qt::MiddleButton);
    release({100, 100});
    EXPECT_EQ(events, QStringList());
}

TEST_F(SelectionViewTest, StaysOnTheScreenWhenThePointerLeavesIt)
{
    press({100, 100});
    move({900, -50});
    release({900, -50});
    EXPECT_EQ(selected, (Rect{100, 200, 300, 100}));
}

TEST_F(SelectionViewTest, ShowsAStillPictureUndimmedInTheHoleWhereWindowsAreOpaque)
{
    QImage still(800, 600, QImage::Format_RGB32); // a screen of scale 2
    still.fill(QColor(200, 100, 40));
    still.setPixelColor(300, 280, Qt::green);
    still.setPixelColor(301, 280, Qt::green);
    still.setPixelColor(300, 281, Qt::green);
    still.setPixelColor(301, 281, Qt::green);
    makeView(still);
    EXPECT_EQ(painted().pixel(10, 10), qRgb(130, 65, 26));
    press({100, 100});
    move({200, 180});
    const QImage image = painted();
    EXPECT_EQ(image.pixel(120, 120), qRgb(200, 100, 40));
    EXPECT_EQ(QColor(image.pixel(150, 140)), QColor(Qt::green));
    EXPECT_EQ(image.pixel(10, 10), qRgb(130, 65, 26));
}

TEST_F(SelectionViewTest, HasAnAccessibleName)
{
    EXPECT_EQ(view->accessibleName(), u"Area selection");
    EXPECT_FALSE(view->accessibleDescription().isEmpty());
}

TEST(SelectionLabel, SaysWholePoints)
{
    EXPECT_EQ(selectionLabelText({640, 480}), u"640 \u00D7 480");
    EXPECT_EQ(selectionLabelText({640.9, 0.99}), u"640 \u00D7 0");
}

TEST(SelectionLabel, DoesNotChangeItsWidthWithItsDigits)
{
    const SelectionLabel label;
    EXPECT_EQ(label.size(u"111 \u00D7 111"_qs), label.size(u"888 \u00D7 404"_qs));
    EXPECT_LT(label.size(u"11 \u00D7 111"_qs).width(), label.size(u"111 \u00D7 111"_qs).width());
}

} // namespace
} // namespace lumenfold

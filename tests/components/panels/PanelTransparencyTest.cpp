#include "tests/components/panels/PanelDesk.h"

#include <xcb/shape.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const Rect frame{60, 60, 200, 160};

class PanelTransparencyTest : public PanelDesk {
protected:
    /// What the window is cut to, in its own pixels.
    [[nodiscard]] QRegion shapeOf(xcb_window_t window) const
    {
        const Reply<xcb_shape_get_rectangles_reply_t> reply(xcb_shape_get_rectangles_reply(
            connection().get(), xcb_shape_get_rectangles(connection().get(), window, XCB_SHAPE_SK_BOUNDING), nullptr));
        QRegion region;
        if (reply) {
            const xcb_rectangle_t *rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
            for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++index) {
                const xcb_rectangle_t &rect = rectangles[index];
                region += QRect(rect.x, rect.y, rect.width, rect.height);
            }
        }
        return region;
    }
    [[nodiscard]] QImage screenAt(const Rect &points) const { return rootPicture(connection(), pixelsOf(points)); }
    [[nodiscard]] QRect wholeOf(const Rect &points) const { return {QPoint(0, 0), pixelsOf(points).size()}; }
};

TEST_F(PanelTransparencyTest, aTranslucentViewBlendsUnderACompositor)
{
    startCompositor(CompositorKind::plain);
    EXPECT_TRUE(m_factory->isTranslucencyAvailable());
    const TestWindow window(server(), {.frame = pixelsOf(frame.outsetBy(20)), .picture = [] {
                                           QImage white(800, 800, QImage::Format_RGB32);
                                           white.fill(Qt::white);
                                           return white;
                                       }()});
    const auto panel = makePanel(frame);
    panel->setContentView(std::make_unique<ColouredView>(QColor(255, 0, 0, 128), 30));
    panel->orderFrontRegardless();
    EXPECT_TRUE(waitFor([&] {
        const QColor colour = colourAt(frame.center());
        return colour.red() == 255 && std::abs(colour.green() - 127) <= 2 && std::abs(colour.blue() - 127) <= 2;
    }));
    // The margin is clear.
    EXPECT_EQ(colourAt({frame.x + 10, frame.midY()}), QColor(Qt::white));
}

TEST_F(PanelTransparencyTest, theWholePanelFadesWithItsAlphaUnderACompositor)
{
    startCompositor(CompositorKind::plain);
    const QImage before = screenAt(frame);
    const auto panel = showPanel(frame, QColor(210, 60, 30));
    panel->setAlpha(0.5);
    EXPECT_TRUE(waitFor([&] { return std::abs(colourAt(frame.center()).red() - 110) <= 2; }));
    EXPECT_EQ(panel->alpha(), 0.5);
    panel->setAlpha(0);
    EXPECT_TRUE(waitFor([&] { return differingPixels(screenAt(frame), before) == 0; }));
    EXPECT_TRUE(panel->isVisible());
    panel->setAlpha(1);
    EXPECT_TRUE(becomes(frame.center(), QColor(210, 60, 30)));
}

TEST_F(PanelTransparencyTest, noShadowIsDrawnAroundAPanel)
{
    startCompositor(CompositorKind::fading);
    settle();
    const Rect around = frame.outsetBy(40);
    const QImage before = screenAt(around);
    const auto panel = makePanel(frame, {.transparentMargin = 30});
    panel->setContentView(std::make_unique<ColouredView>(Qt::red, 30));
    panel->orderFrontRegardless();
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
    settle();
    QImage expected = before;
    const Rect card = frame.insetBy(30);
    const QRect cardPixels = pixelsOf(card).translated(-pixelsOf(around).topLeft());
    for (int y = cardPixels.top(); y <= cardPixels.bottom(); ++y) {
        for (int x = cardPixels.left(); x <= cardPixels.right(); ++x) {
            expected.setPixelColor(x, y, Qt::red);
        }
    }
    EXPECT_TRUE(waitFor([&] { return differingPixels(screenAt(around), expected) == 0; }))
        << differingPixels(screenAt(around), expected) << " pixels differ";
}

TEST_F(PanelTransparencyTest, orderOutLeavesNoTraceInTheVeryNextPictures)
{
    // Slow enough that a fade would be in every picture that is taken here.
    startCompositor(QByteArray("backend = \"xrender\"; vsync = false; fading = true; fade-in-step = 1.0; "
                               "fade-out-step = 0.01; fade-delta = 30; shadow = true; shadow-radius = 20;"));
    const TestWindow beneath(server(), {.frame = pixelsOf(frame.outsetBy(60))});
    const Rect around = frame.outsetBy(40);
    settle();
    EXPECT_TRUE(waitFor([&] { return colourAt(frame.center()) != QColor(10, 60, 30); }));
    const QImage before = screenAt(around);
    const auto panel = showPanel(frame, Qt::red, {.title = u"card"_s});
    const xcb_window_t window = windowOf(u"card"_s);
    EXPECT_NE(differingPixels(screenAt(around), before), 0);

    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(m_leftWithoutTrace, std::vector<std::uint32_t>({window}));
    // The compositor shows its next picture when it gets to it.
    EXPECT_TRUE(waitFor([&] { return differingPixels(screenAt(around), before) == 0; }, 250ms))
        << differingPixels(screenAt(around), before) << " pixels differ";
    EXPECT_TRUE(staysTrue([&] { return differingPixels(screenAt(around), before) == 0; }, 300ms));
}

TEST_F(PanelTransparencyTest, aPanelComesBackWithItsContentAfterItWasErased)
{
    startCompositor(CompositorKind::plain);
    const auto panel = showPanel(frame, Qt::red);
    const QImage shown = screenAt(frame);
    for (int round = 0; round < 3; ++round) {
        panel->orderOut();
        EXPECT_TRUE(waitFor([&] { return colourAt(frame.center()) != QColor(Qt::red); }));
        panel->orderFrontRegardless();
        EXPECT_TRUE(waitFor([&] { return differingPixels(screenAt(frame), shown) == 0; }));
    }
}

TEST_F(PanelTransparencyTest, withoutCompositorThePanelIsCutToItsCard)
{
    EXPECT_FALSE(m_factory->isTranslucencyAvailable());
    const QImage before = screenAt(frame);
    const auto panel = makePanel(frame, {.transparentMargin = 30, .title = u"card"_s});
    panel->setContentView(std::make_unique<ColouredView>(Qt::red, 30));
    panel->orderFrontRegardless();
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
    const int margin = 30 * scale();
    EXPECT_EQ(shapeOf(windowOf(u"card"_s)), QRegion(wholeOf(frame).marginsRemoved({margin, margin, margin, margin})));
    const QImage after = screenAt(frame);
    EXPECT_EQ(differingRegion(before, after), wholeOf(frame).marginsRemoved({margin, margin, margin, margin}));
}

TEST_F(PanelTransparencyTest, withoutCompositorTheViewSaysWhatItPaints)
{
    const QImage before = screenAt(frame);
    const auto panel = makePanel(frame, {.title = u"round"_s});
    panel->setContentView(std::make_unique<RoundView>());
    panel->orderFrontRegardless();
    EXPECT_TRUE(becomes(frame.center(), Qt::blue));
    const QImage after = screenAt(frame);
    const QPoint corner(2, 2);
    EXPECT_EQ(after.pixel(corner), before.pixel(corner));
    EXPECT_FALSE(shapeOf(windowOf(u"round"_s)).contains(corner));

    // The shape follows the view.
    panel->setFrame({60, 60, 100, 80});
    EXPECT_TRUE(waitFor([&] {
        settle();
        return shapeOf(windowOf(u"round"_s)).boundingRect() == wholeOf({60, 60, 100, 80});
    }));
}

TEST_F(PanelTransparencyTest, withoutCompositorTheShapeFollowsTheViewsPainting)
{
    class Growing : public ColouredView, public PanelContentShape {
    public:
        Growing() : ColouredView(Qt::red) {}
        QRegion opaqueShape(double scale) const override { return QTransform::fromScale(scale, scale).map(shape); }
        QRegion shape{10, 10, 50, 40};
    };
    const auto panel = makePanel(frame, {.title = u"growing"_s});
    auto view = std::make_unique<Growing>();
    Growing *growing = view.get();
    panel->setContentView(std::move(view));
    panel->orderFrontRegardless();
    const auto isCutTo = [&](const QRect &points) {
        return waitFor([&] {
            settle();
            return shapeOf(windowOf(u"growing"_s)) ==
                   QRegion(QRect(points.topLeft() * scale(), points.size() * scale()));
        });
    };
    EXPECT_TRUE(isCutTo({10, 10, 50, 40}));
    growing->shape = QRegion(0, 0, 120, 100);
    growing->update();
    EXPECT_TRUE(isCutTo({0, 0, 120, 100}));
    EXPECT_TRUE(becomes({frame.x + 100, frame.maxY() - 90}, Qt::red));
}

TEST_F(PanelTransparencyTest, withoutCompositorAnInvisiblePanelIsHidden)
{
    const QImage before = screenAt(frame);
    const auto panel = showPanel(frame, Qt::red, {.title = u"card"_s});
    panel->setAlpha(0);
    EXPECT_TRUE(waitFor([&] { return !isMapped(windowOf(u"card"_s)); }));
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(differingPixels(screenAt(frame), before), 0);
    bool completed = false;
    panel->animate({.alpha = 1, .duration = 60ms, .onCompleted = [&] { completed = true; }});
    EXPECT_TRUE(waitFor([&] { return completed; }));
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
}

TEST_F(PanelTransparencyTest, aCompositorMayComeAndGoWhilePanelsStand)
{
    const auto panel = makePanel(frame, {.transparentMargin = 30, .title = u"card"_s});
    panel->setContentView(std::make_unique<ColouredView>(Qt::red, 30));
    panel->orderFrontRegardless();
    const xcb_window_t window = windowOf(u"card"_s);
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
    const QRegion cut(wholeOf(frame.insetBy(30)).translated(30 * scale(), 30 * scale()));
    const QRegion whole(wholeOf(frame));
    EXPECT_EQ(shapeOf(window), cut);

    startCompositor(CompositorKind::plain);
    settle();
    EXPECT_EQ(shapeOf(window), whole);
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
    EXPECT_TRUE(becomes({frame.x + 10, frame.midY()}, QColor(10, 60, 30)));

    stopCompositor();
    settle();
    EXPECT_EQ(shapeOf(window), cut);
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
}

} // namespace
} // namespace lumenfold::test

#include "tests/components/panels/PanelDesk.h"

#include <QApplication>
#include <QElapsedTimer>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class PanelRobustnessTest : public PanelDesk {};

TEST_F(PanelRobustnessTest, aWindowDestroyedBySomebodyElseComesBack)
{
    const Rect frame{60, 60, 120, 90};
    const auto panel = showPanel(frame, Qt::red, {.title = u"card"_s});
    const xcb_window_t destroyed = windowOf(u"card"_s);
    xcb_destroy_window(connection().get(), destroyed);
    connection().sync();
    panel->setFrame({80, 80, 130, 90});
    panel->animate({.alpha = 0.5, .duration = 20ms});
    EXPECT_TRUE(waitFor([&] {
        const xcb_window_t window = windowOf(u"card"_s);
        return window != XCB_NONE && window != destroyed && isMapped(window);
    }));
    settle();
    EXPECT_EQ(connection().frameOf(windowOf(u"card"_s)), pixelsOf({80, 80, 130, 90}));
    panel->orderOut();
    EXPECT_TRUE(waitFor([&] { return !isMapped(windowOf(u"card"_s)); }));
}

TEST_F(PanelRobustnessTest, aPanelMayGoFromInsideItsViewsOwnEvent)
{
    auto panel = showPanel({60, 60, 120, 90}, Qt::red, {.title = u"card"_s});
    class Suicidal : public QWidget {
    public:
        std::unique_ptr<Panel> *panel = nullptr;

    protected:
        bool event(QEvent *event) override
        {
            if (event->type() == QEvent::User) {
                panel->reset();
                // Still alive: the rest of the handler may use the view.
                setObjectName(QStringLiteral("survived"));
            }
            return QWidget::event(event);
        }
    };
    auto view = std::make_unique<Suicidal>();
    view->panel = &panel;
    Suicidal *sent = view.get();
    panel->setContentView(std::move(view));
    QEvent event(QEvent::User);
    QApplication::sendEvent(sent, &event);
    EXPECT_EQ(panel, nullptr);
    EXPECT_TRUE(waitFor([&] { return windowOf(u"card"_s) == XCB_NONE; }));
}

TEST_F(PanelRobustnessTest, screensMayComeAndGo)
{
    const Rect frame{60, 60, 120, 90};
    const auto panel = showPanel(frame, Qt::red, {.title = u"card"_s});
    const QSize size = server().size();
    const int half = size.width() / 2;
    server().setMonitors({{.name = "left", .frame = QRect(0, 0, half, size.height())},
                          {.name = "right", .frame = QRect(half, 0, half, size.height()), .primary = true}});
    EXPECT_TRUE(waitFor([&] { return m_screens->all().size() == 2; }));
    // The main screen is the right one now, and so is the origin of all points.
    EXPECT_TRUE(waitFor([&] {
        settle();
        return connection().frameOf(windowOf(u"card"_s)) == pixelsOf(frame).translated(half, 0);
    }));
    panel->setFrame({-300, 60, 120, 90});
    EXPECT_TRUE(waitFor([&] {
        settle();
        return connection().frameOf(windowOf(u"card"_s)) == pixelsOf({-300, 60, 120, 90}).translated(half, 0);
    }));
    server().setMonitors({});
    EXPECT_TRUE(waitFor([&] {
        settle();
        return m_screens->all().size() == 1 &&
               connection().frameOf(windowOf(u"card"_s)) == pixelsOf({-300, 60, 120, 90});
    }));
    EXPECT_EQ(panel->frame(), (Rect{-300, 60, 120, 90}));
}

TEST_F(PanelRobustnessTest, anEmptyFrameIsNoError)
{
    const auto panel = makePanel({}, {.title = u"empty"_s});
    panel->orderFrontRegardless();
    settle();
    EXPECT_EQ(panel->frame(), Rect{});
    EXPECT_EQ(connection().frameOf(windowOf(u"empty"_s)).size(), QSize(1, 1));
}

TEST_F(PanelRobustnessTest, hundredsOfPanelsMoveTogether)
{
    constexpr int count = 300;
    std::vector<std::unique_ptr<Panel>> panels;
    for (int index = 0; index < count; ++index) {
        panels.push_back(makePanel({24.0 + index % 20, 24.0 + index / 20, 60, 45}, {.title = u"card %1"_s.arg(index)}));
        panels.back()->setContentView(std::make_unique<ColouredView>(Qt::red));
        panels.back()->orderFrontRegardless();
    }
    settle();
    int completed = 0;
    QElapsedTimer time;
    time.start();
    for (int index = 0; index < count; ++index) {
        panels[static_cast<std::size_t>(index)]->animate({.frame = Rect{400.0 + index % 20, 200.0 + index / 20, 60, 45},
                                                          .duration = 200ms,
                                                          .onCompleted = [&] { ++completed; }});
    }
    EXPECT_TRUE(waitFor([&] { return completed == count; }));
    RecordProperty("milliseconds", static_cast<int>(time.elapsed()));
    settle();
    for (int index = 0; index < count; index += 37) {
        EXPECT_EQ(connection().frameOf(windowOf(u"card %1"_s.arg(index))),
                  pixelsOf({400.0 + index % 20, 200.0 + index / 20, 60, 45}));
    }
}

} // namespace
} // namespace lumenfold::test

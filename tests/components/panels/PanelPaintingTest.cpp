/// When panels are painted, and how little moving them costs.
#include "tests/components/panels/PanelDesk.h"

#include "platform/x11/QtWindows.h"
#include "platform/x11/X11Atoms.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

/// Of how many views the event loop painted one after the other without getting to anything else.
class Paintings {
public:
    Paintings()
    {
        m_beat.setInterval(1ms);
        QObject::connect(&m_beat, &QTimer::timeout, [this] { m_sinceBeat = 0; });
        m_beat.start();
    }

    void painted()
    {
        ++m_all;
        m_most = std::max(m_most, ++m_sinceBeat);
    }
    void forget() { m_all = m_most = 0; }

    [[nodiscard]] int all() const { return m_all; }
    [[nodiscard]] int mostAtOnce() const { return m_most; }

private:
    QTimer m_beat;
    int m_all = 0;
    int m_sinceBeat = 0;
    int m_most = 0;
};

/// Takes its time to paint: more than half of what may be painted in one turn of the event loop.
class SlowView : public ColouredView {
public:
    explicit SlowView(Paintings &paintings) : ColouredView(Qt::red), m_paintings(paintings) {}

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QElapsedTimer timer;
        timer.start();
        while (!timer.hasExpired(5)) {
        }
        ColouredView::paintEvent(event);
        m_paintings.painted();
    }

private:
    Paintings &m_paintings;
};

class PanelPaintingTest : public PanelDesk {
protected:
    static constexpr int count = 12;
    /// Two in one turn, and as many when the beat comes between two turns only.
    static constexpr int mostAtOnce = 4;

    void showSlowPanels()
    {
        for (int index = 0; index < count; ++index) {
            m_panels.push_back(makePanel(frameOf(index)));
            m_panels.back()->setContentView(std::make_unique<SlowView>(m_paintings));
        }
        for (const auto &panel : m_panels) {
            panel->orderFrontRegardless();
        }
        ASSERT_TRUE(allAreSeen());
        settle();
    }

    [[nodiscard]] static Rect frameOf(int index) { return {20.0 + 40 * index, 50, 30, 30}; }

    [[nodiscard]] bool allAreSeen() const
    {
        return waitFor([this] {
            return std::ranges::all_of(m_panels, [this](const auto &panel) {
                return colourAt({panel->frame().maxX() - 1, panel->frame().maxY() - 1}) == QColor(Qt::red);
            });
        });
    }

    Paintings m_paintings;
    std::vector<std::unique_ptr<Panel>> m_panels;
};

TEST_F(PanelPaintingTest, manyThatAppearTogetherArePaintedOneAfterTheOther)
{
    startCompositor(CompositorKind::plain);
    showSlowPanels();
    EXPECT_GE(m_paintings.all(), count);
    EXPECT_LE(m_paintings.mostAtOnce(), mostAtOnce);
}

TEST_F(PanelPaintingTest, manyThatAreResizedTogetherArePaintedOneAfterTheOther)
{
    startCompositor(CompositorKind::plain);
    showSlowPanels();
    m_paintings.forget();
    for (const auto &panel : m_panels) {
        const Rect frame = panel->frame();
        panel->setFrame({frame.x, frame.y, 36, 38});
    }
    EXPECT_TRUE(allAreSeen());
    settle();
    EXPECT_GE(m_paintings.all(), count);
    EXPECT_LE(m_paintings.mostAtOnce(), mostAtOnce);
}

TEST_F(PanelPaintingTest, manyWhoseViewsChangeTogetherArePaintedOneAfterTheOther)
{
    showSlowPanels();
    m_paintings.forget();
    for (QWidget *window : QApplication::topLevelWidgets()) {
        window->update();
        for (QWidget *view : window->findChildren<QWidget *>()) {
            view->update();
        }
    }
    EXPECT_TRUE(waitFor([this] { return m_paintings.all() >= count; }));
    settle();
    EXPECT_EQ(m_paintings.all(), count);
    EXPECT_LE(m_paintings.mostAtOnce(), mostAtOnce);
}

TEST_F(PanelPaintingTest, onesThatGoBeforeTheirTurnLeaveTheOthersTheirs)
{
    showSlowPanels();
    m_paintings.forget();
    for (const auto &panel : m_panels) {
        panel->setFrame(panel->frame().outsetBy(3));
    }
    m_panels.erase(m_panels.begin() + 1, m_panels.begin() + 9);
    EXPECT_TRUE(allAreSeen());
}

TEST_F(PanelPaintingTest, oneThatIsHiddenBeforeItsTurnIsPaintedWhenItIsShownAgain)
{
    showSlowPanels();
    for (const auto &panel : m_panels) {
        panel->setFrame(panel->frame().outsetBy(3));
    }
    m_panels.back()->orderOut();
    settle();
    m_panels.back()->orderFrontRegardless();
    EXPECT_TRUE(allAreSeen());
}

class PanelRequestsTest : public PanelDesk {
protected:
    static constexpr unsigned steps = 10;

    /// How many requests more than at rest go to the server while each step is made and settles.
    [[nodiscard]] unsigned requestsDuring(const std::function<void(unsigned)> &step) const
    {
        return countRequests(step) - countRequests([](unsigned) {});
    }

private:
    [[nodiscard]] unsigned countRequests(const std::function<void(unsigned)> &step) const
    {
        const unsigned before = xcb_no_operation(x11::qtConnection()).sequence;
        for (unsigned number = 1; number <= steps; ++number) {
            step(number);
            settle();
        }
        return xcb_no_operation(x11::qtConnection()).sequence - before;
    }
};

TEST_F(PanelRequestsTest, aMoveAsksTheServerForNothingButTheMove)
{
    const auto panel = showPanel({24, 24, 120, 90});
    settle();
    const unsigned moving = requestsDuring([&](unsigned number) {
        panel->setFrame({24.0 + 10 * number, 24, 120, 90});
    });
    EXPECT_EQ(moving, steps);
}

TEST_F(PanelRequestsTest, theStateThatWasSetIsNotAskedFor)
{
    const auto panel = showPanel({24, 24, 120, 90});
    settle();
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto shown = std::ranges::find_if(windows, [](const QWidget *each) { return each->isVisible(); });
    ASSERT_NE(shown, windows.end());
    x11::X11Atoms atoms(x11::qtConnection());
    const xcb_atom_t state = atoms.atom("_NET_WM_STATE");
    const xcb_atom_t above = atoms.atom("_NET_WM_STATE_ABOVE");
    const unsigned setting = requestsDuring([&](unsigned) {
        xcb_change_property(x11::qtConnection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>((*shown)->winId()),
                            state, XCB_ATOM_ATOM, 32, 1, &above);
        xcb_flush(x11::qtConnection());
    });
    EXPECT_EQ(setting, steps);
}

} // namespace
} // namespace lumenfold::test

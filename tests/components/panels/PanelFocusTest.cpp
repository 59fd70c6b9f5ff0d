#include "tests/components/panels/PanelDesk.h"

#include "tests/support/desktop/Input.h"

#include <QApplication>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

class PanelFocusTest : public PanelDesk, public ::testing::WithParamInterface<WindowManagerKind> {
protected:
    void SetUp() override { startWindowManager(GetParam()); }

    struct Focus {
        xcb_window_t input = XCB_NONE;
        QList<quint32> active;

        friend bool operator==(const Focus &, const Focus &) = default;
        friend void PrintTo(const Focus &focus, std::ostream *out)
        {
            *out << "input 0x" << std::hex << focus.input << ", active 0x" << focus.active.value(0);
        }
    };
    /// Gives the window the focus and returns when the window manager says so, too.
    Focus focusOn(TestWindow &window) const
    {
        window.focus();
        if (GetParam() != WindowManagerKind::none) {
            EXPECT_TRUE(waitFor([&] { return focus().active.value(0) == window.id(); }));
        }
        return focus();
    }
    [[nodiscard]] Focus focus() const
    {
        return {connection().focusedWindow(), connection().cardinals(connection().root(), "_NET_ACTIVE_WINDOW")};
    }

    Pointer m_pointer{server().display()};
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, PanelFocusTest,
                         ::testing::Values(WindowManagerKind::none, WindowManagerKind::openbox,
                                           WindowManagerKind::xfwm4, WindowManagerKind::i3));

TEST_P(PanelFocusTest, staysWhereItIsWhenAPanelComesIsClickedAndGoes)
{
    TestWindow window(server(), {.frame = {400, 100, 300, 200}});
    const Focus before = focusOn(window);
    window.forgetInput();

    const Rect frame{60, 60, 120, 90};
    const auto panel = makePanel(frame, {.title = u"card"_s});
    auto view = std::make_unique<ColouredView>(Qt::red);
    const auto *clicked = view.get();
    panel->setContentView(std::move(view));
    panel->orderFrontRegardless();
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
    settle();
    EXPECT_EQ(focus(), before);

    m_pointer.click(pixelAt(frame.center()));
    EXPECT_TRUE(waitFor([&] { return clicked->clicks() == 1; })) << "the first click is for the panel";
    settle();
    EXPECT_EQ(focus(), before);
    EXPECT_EQ(QApplication::focusWindow(), nullptr);

    panel->orderOut();
    settle();
    EXPECT_EQ(focus(), before);
    EXPECT_EQ(window.focusLosses(), 0);
}

TEST_P(PanelFocusTest, overlaysTakeTheFirstClickOverTheWholeScreenAndShowTheirCursor)
{
    TestWindow window(server(), {.frame = {400, 100, 300, 200}});
    const Focus before = focusOn(window);
    window.forgetInput();

    const Size screen = screenSize();
    const auto overlay =
        makePanel({0, 0, screen.width, screen.height},
                  {.level = PanelLevel::screenSaver, .keyPolicy = PanelKeyPolicy::mayBecomeKey, .title = u"overlay"_s});
    auto view = std::make_unique<ColouredView>(Qt::darkGray);
    const auto *clicked = view.get();
    overlay->setContentView(std::move(view));
    overlay->setCursor(CursorShape::crosshair);
    overlay->orderFrontRegardless();
    EXPECT_TRUE(becomes({screen.width / 2, screen.height / 2}, Qt::darkGray));
    m_pointer.click(QPoint(3, 3));
    m_pointer.click(window.frame().center());
    EXPECT_TRUE(waitFor([&] { return clicked->clicks() == 2; }));
    settle();
    EXPECT_EQ(focus(), before);
    EXPECT_TRUE(window.buttonPresses().isEmpty());
}

} // namespace
} // namespace lumenfold::test

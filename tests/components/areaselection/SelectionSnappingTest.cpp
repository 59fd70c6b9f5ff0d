#include "tests/components/areaselection/SelectionDesk.h"

#include "tests/support/desktop/DesktopTest.h"

#include <QProcessEnvironment>
#include <QWidget>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

/// Snapping to the window of another program: a terminal.
class SelectionSnappingTest : public SelectionDesk {
protected:
    /// Returns its frame when it stands.
    QRect startTerminal()
    {
        QProcessEnvironment environment = server().clientEnvironment();
        m_terminal = std::make_unique<Process>(ProcessOptions{
            .program = u"xterm"_s,
            .arguments = {u"-geometry"_s, u"40x12+210+130"_s, u"-bw"_s, u"0"_s, u"-e"_s, u"sleep"_s, u"1000"_s},
            .environment = environment});
        QRect frame;
        waitUntil("the terminal", [&] {
            const auto windows = windowsOf(connection(), m_terminal->pid());
            frame = windows.isEmpty() ? QRect() : windows.last().frame;
            return frame.width() > 50;
        });
        return frame;
    }

    std::unique_ptr<Process> m_terminal;
};

TEST_F(SelectionSnappingTest, BothEndsOfADragSnapToTheWindowsEdges)
{
    startCompositor(CompositorKind::plain);
    const QRect frame = startTerminal();
    present();
    drag(frame.topLeft() + QPoint(px(6), -px(5)), frame.bottomRight() + QPoint(px(5), px(6)));
    const Ending selection = ending();
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(frame));
}

TEST_F(SelectionSnappingTest, FartherAwayNothingSnaps)
{
    const QRect frame = startTerminal();
    present();
    const QRect area = frame.adjusted(-px(9), -px(9), px(9), px(9));
    drag(area.topLeft(), area.topLeft() + QPoint(area.width(), area.height()));
    const Ending selection = ending();
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(area));
}

TEST_F(SelectionSnappingTest, TheScreensOwnEdgesAttract)
{
    present();
    const QSize size = server().size();
    drag({px(5), px(4)}, {size.width() - px(6), size.height() - px(7)});
    const Ending selection = ending();
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(QRect(QPoint(0, 0), size)));
}

TEST_F(SelectionSnappingTest, OwnPanelsDoNotAttract)
{
    const auto card = panels().makePanel({.title = u"card"_s}, points(QRect(px(100, 100), QSize(px(160), px(120)))));
    card->setContentView(std::make_unique<QWidget>());
    card->orderFrontRegardless();
    present();
    const QRect area(px(103, 104), QSize(px(160), px(120)));
    drag(area.topLeft(), area.topLeft() + QPoint(area.width(), area.height()));
    const Ending selection = ending();
    ASSERT_TRUE(selection.rect);
    EXPECT_EQ(*selection.rect, points(area));
}

} // namespace
} // namespace lumenfold::test

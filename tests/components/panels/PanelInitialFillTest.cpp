#include "tests/components/panels/PanelDesk.h"

#include <QApplication>
#include <QDeadlineTimer>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

/// What stands in the middle of the panel, and what it becomes.
class PanelInitialFillTest : public PanelDesk {
protected:
    [[nodiscard]] std::unique_ptr<Panel> fillThenView()
    {
        auto panel = makePanel(frame, {.initialFill = QColor(Qt::yellow), .title = u"filled"_s});
        panel->setContentView(std::make_unique<ColouredView>(Qt::red));
        panel->orderFrontRegardless();
        return panel;
    }

    /// The colours that another client sees in the middle until it is the view's.
    [[nodiscard]] QList<QColor> coloursUntilTheViewIsSeen()
    {
        QList<QColor> seen;
        EXPECT_TRUE(waitFor([&] {
            const QColor now = colourAt(frame.center());
            if (seen.isEmpty() || seen.last() != now) {
                seen.append(now);
            }
            return now == QColor(Qt::red);
        }));
        return seen;
    }

    const Rect frame{100, 100, 120, 90};
};

TEST_F(PanelInitialFillTest, isSeenUntilTheViewIsPainted)
{
    startCompositor(CompositorKind::plain);
    const auto panel = fillThenView();
    QApplication::processEvents(); // sends what has been asked for; without further events nothing is painted
    QDeadlineTimer deadline(defaultTimeout);
    while (colourAt(frame.center()) != QColor(Qt::yellow) && !deadline.hasExpired()) {
    }
    EXPECT_EQ(colourAt(frame.center()), QColor(Qt::yellow));
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
}

TEST_F(PanelInitialFillTest, isNeverSeenWhereWindowsDoNotBlend)
{
    const auto panel = fillThenView();
    EXPECT_FALSE(coloursUntilTheViewIsSeen().contains(QColor(Qt::yellow)));
}

TEST_F(PanelInitialFillTest, leavesAPanelThatComesBackPaintable)
{
    startCompositor(CompositorKind::plain);
    const auto panel = fillThenView();
    static_cast<void>(coloursUntilTheViewIsSeen());
    panel->orderOut();
    settle();
    panel->orderFrontRegardless();
    EXPECT_TRUE(becomes(frame.center(), Qt::red));
}

TEST_F(PanelInitialFillTest, mayBelongToAPanelThatGoesBeforeItIsPainted)
{
    startCompositor(CompositorKind::plain);
    auto panel = fillThenView();
    panel->orderOut();
    panel.reset();
    settle();
    EXPECT_FALSE(isMapped(windowOf(u"filled"_s)));
}

} // namespace
} // namespace lumenfold::test

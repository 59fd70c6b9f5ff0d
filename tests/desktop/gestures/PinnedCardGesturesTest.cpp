/// Moving and resizing a pinned card with the pointer.
#include "tests/desktop/DesktopSetting.h"
#include "tests/support/desktop/DesktopTest.h"

#include <xcb/xfixes.h>

#include <cstdlib>

namespace lumenfold::test {
namespace {

class PinnedCardGestures : public DesktopSettingTest {
protected:
    /// Captures the screen, pins the card and returns the pinned card's window.
    QRect startWithPinnedCard()
    {
        Desktop &desktop = start(GetParam().options());
        desktop.paintBackground(knownPicture(cardFriendlyScreen * GetParam().scale));
        desktop.pointer().moveTo({pixels(1200), pixels(100)});
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        desktop.waitForPanels(1);
        const CardColumn column{.workArea = desktop.workArea(), .scale = GetParam().scale};
        const QRect card = column.slot(0);
        // The pin's middle is ten points outside the card's corner.
        const int inset = pixels(CardColumn::hitMargin - 10);
        desktop.pointer().click({card.right() - inset, card.top() + inset});
        waitUntil("the pinned card", [&] { return pinned().has_value(); });
        desktop.waitForStillPicture();
        return *pinned();
    }

    [[nodiscard]] std::optional<QRect> pinned() const
    {
        for (const WindowInfo &panel : m_desktop->panels()) {
            if (panel.title.startsWith(QStringLiteral("Pinned screenshot"))) {
                return panel.frame;
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] bool waitForPinned(const QRect &frame) const
    {
        return waitFor([&] { return pinned() == frame; });
    }

    /// Around the visible card.
    [[nodiscard]] int margin() const { return pixels(52); }

    /// The size and hot spot of the cursor that is shown.
    [[nodiscard]] std::pair<QSize, QPoint> cursor() const
    {
        xcb_connection_t *connection = m_desktop->connection().get();
        std::free(xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
        auto *reply = xcb_xfixes_get_cursor_image_reply(connection, xcb_xfixes_get_cursor_image(connection), nullptr);
        const std::pair result{QSize(reply->width, reply->height), QPoint(reply->xhot, reply->yhot)};
        std::free(reply);
        return result;
    }
};

TEST_P(PinnedCardGestures, ThePointerDragsItAlong)
{
    const QRect before = startWithPinnedCard();
    Pointer &pointer = m_desktop->pointer();

    const QPoint way(pixels(150), pixels(-80));
    pointer.drag(before.center(), before.center() + way);
    EXPECT_TRUE(waitForPinned(before.translated(way)));
    // Partly off the screen.
    pointer.drag(before.center() + way, before.center() + way + QPoint(pixels(400), pixels(-150)));
    EXPECT_TRUE(waitForPinned(before.translated(way + QPoint(pixels(400), pixels(-150)))));
}

TEST_P(PinnedCardGestures, ItsCornersResizeItInItsOwnProportions)
{
    const QRect before = startWithPinnedCard();
    const QRect card = before.marginsRemoved({margin(), margin(), margin(), margin()});
    Pointer &pointer = m_desktop->pointer();

    const QPoint handle = card.bottomRight() - QPoint(pixels(8), pixels(8));
    pointer.drag(handle, handle + QPoint(pixels(128), pixels(81)));
    // The screen's own proportions: 128 to 81.
    EXPECT_TRUE(waitForPinned(before.adjusted(0, 0, pixels(128), pixels(81))));
}

TEST_P(PinnedCardGestures, TheCursorTellsWhereItIsResized)
{
    const QRect before = startWithPinnedCard();
    const QRect card = before.marginsRemoved({margin(), margin(), margin(), margin()});
    Pointer &pointer = m_desktop->pointer();
    const std::pair arrow(QSize(pixels(21), pixels(21)), QPoint(pixels(21) / 2, pixels(21) / 2));

    pointer.moveTo(card.center());
    EXPECT_TRUE(waitFor([&] { return cursor() != arrow; }));
    pointer.moveTo(card.topLeft() + QPoint(pixels(8), pixels(8)));
    EXPECT_TRUE(waitFor([&] { return cursor() == arrow; }));
    if (GetParam().compositor != CompositorKind::none) {
        // Up to fourteen points outside the card, unless the window is cut to it.
        pointer.moveTo(card.topLeft() - QPoint(pixels(13), pixels(13)));
        EXPECT_TRUE(staysTrue([&] { return cursor() == arrow; }, std::chrono::milliseconds(150)));
    }
    pointer.moveTo(card.center());
    EXPECT_TRUE(waitFor([&] { return cursor() != arrow; }));
}

INSTANTIATE_TEST_SUITE_P(On, PinnedCardGestures, plainAndScaled(), DesktopSetting::nameOf);

} // namespace
} // namespace lumenfold::test

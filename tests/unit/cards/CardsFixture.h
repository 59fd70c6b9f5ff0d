#pragma once

#include "app/configuration/AppConfig.h"
#include "cards/CardEditor.h"
#include "cards/FullSizePreview.h"
#include "cards/PreviewModel.h"
#include "cards/PreviewWindowController.h"
#include "tests/support/fakes/FakeCardStore.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

/// How a failing test tells a rectangle.
void PrintTo(const Rect &rect, std::ostream *out);

namespace test {

/// Equal but for the rounding of a few additions.
MATCHER_P(RectNear, expected, "")
{
    const auto near = [](double one, double other) { return std::abs(one - other) < 1e-9; };
    const Rect &actual = arg;
    return near(actual.x, expected.x) && near(actual.y, expected.y) && near(actual.width, expected.width) &&
           near(actual.height, expected.height);
}

/// A screen on which four cards of 160 x 120 fit above each other, its visible frame away from the origin.
[[nodiscard]] Screen screenOfFourCards();

/// The panel frames on that screen, worked out by hand.
/// The lowest slot's card stands at (124, 74), each further one 132 higher.
[[nodiscard]] Rect slotFrame(int slot);
/// A deck that is not peeking, layers 0 to 3.
[[nodiscard]] Rect deckFrame(int layer);
/// The cards above an overflow deck of three layers, whose top is at 219.6.
[[nodiscard]] Rect aboveDeckFrame(int slot);
/// A peeking deck: 116 lower.
[[nodiscard]] Rect peekingFrame(int layer);

/// An opaque picture.
[[nodiscard]] Image picture(int width, int height);

class RecordingPreview : public FullSizePreview {
public:
    void present(const Image &image) override { presented.push_back(image); }
    std::vector<Image> presented;
};

class RecordingEditor : public CardEditor {
public:
    struct Session {
        Image image;
        QString screenshotId;
        ExportHandler onExport;
    };
    void present(const Image &image, const QString &screenshotId, ExportHandler onExport) override
    {
        sessions.push_back({image, screenshotId, std::move(onExport)});
    }
    std::vector<Session> sessions;
};

/// A controller among fakes, on the screen of four cards.
class CardsTest : public ::testing::Test {
protected:
    CardsTest();
    ~CardsTest() override;

    using CardPointer = PreviewWindowController::CardPointer;

    /// Shows `count` cards with the ids "1", "2", ... and lets their animations end.
    void showCards(int count);
    void settle();

    [[nodiscard]] FakePanel &panelOf(const CardPointer &card) const;
    [[nodiscard]] CardPointer card(const QString &id) const;
    [[nodiscard]] FakePanel &panel(const QString &id) const { return panelOf(card(id)); }
    [[nodiscard]] PreviewModel &model(const QString &id) const { return *card(id)->model; }

    /// Ids of all cards in their order.
    [[nodiscard]] QStringList ids() const;
    /// Ids of the cards on screen, back to front; "?" for a panel whose card is gone.
    [[nodiscard]] QStringList stacking() const;
    /// Where the cards stand, in the order of the column.
    [[nodiscard]] std::vector<Rect> columnFrames() const;

    void movePointerTo(Point location);

    FakeScreens screens;
    FakeUserDefaults defaults;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    FakeMainQueue queue;
    FakePanelFactory panels{queue};
    FakeEventMonitors monitors;
    FakeCardViews views;
    FakeCardStore store;
    RecordingPreview preview;
    RecordingEditor editor;
    std::unique_ptr<PreviewWindowController> controller;

    /// Makes the controller anew, with the collaborators that may be missing or without them.
    void makeController();
    void makeControllerWithoutExtras();
};

} // namespace test
} // namespace lumenfold

#include "tests/unit/cards/CardsFixture.h"

#include <QImage>

#include <algorithm>
#include <ostream>

namespace lumenfold {

void PrintTo(const Rect &rect, std::ostream *out)
{
    *out << "(" << rect.x << ", " << rect.y << ", " << rect.width << " x " << rect.height << ")";
}

namespace test {

Screen screenOfFourCards()
{
    return {.displayID = 1, .frame = {0, 0, 1100, 650}, .visibleFrame = {100, 50, 1000, 564}};
}

Rect slotFrame(int slot)
{
    return {94, 44 + 132.0 * slot, 220, 180};
}

Rect deckFrame(int layer)
{
    static const std::vector<Rect> frames{
        {94, 44, 220, 180}, {98.8, 64, 210.4, 172.8}, {103.6, 84, 200.8, 165.6}, {108.4, 104, 191.2, 158.4}};
    return frames.at(static_cast<std::size_t>(layer));
}

Rect aboveDeckFrame(int slot)
{
    return {94, 201.6 + 132.0 * slot, 220, 180};
}

Rect peekingFrame(int layer)
{
    return deckFrame(layer).offsetBy(0, -116);
}

Image picture(int width, int height)
{
    QImage pixels(width, height, QImage::Format_RGB32);
    pixels.fill(Qt::darkCyan);
    return Image::fromPixels(std::move(pixels));
}

CardsTest::CardsTest()
{
    screens.setScreens({screenOfFourCards()});
    makeController();
}

CardsTest::~CardsTest() = default;

void CardsTest::makeController()
{
    controller =
        std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{.panels = panels,
                                                                                         .monitors = monitors,
                                                                                         .screens = screens,
                                                                                         .config = config,
                                                                                         .queue = queue,
                                                                                         .views = views,
                                                                                         .store = &store,
                                                                                         .fullSizePreview = &preview,
                                                                                         .editor = &editor});
}

void CardsTest::makeControllerWithoutExtras()
{
    controller = std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{
        .panels = panels, .monitors = monitors, .screens = screens, .config = config, .queue = queue, .views = views});
}

void CardsTest::showCards(int count)
{
    for (int number = 1; number <= count; ++number) {
        controller->show(picture(8, 6), {.id = QString::number(number)});
    }
    settle();
}

void CardsTest::settle()
{
    queue.advance(std::chrono::seconds(1));
}

FakePanel &CardsTest::panelOf(const CardPointer &card) const
{
    return dynamic_cast<FakePanel &>(*card->panel);
}

CardsTest::CardPointer CardsTest::card(const QString &id) const
{
    const auto &cards = controller->cards();
    const auto found =
        std::ranges::find_if(cards, [&](const CardPointer &each) { return each->model->screenshotId() == id; });
    return found == cards.end() ? nullptr : *found;
}

QStringList CardsTest::ids() const
{
    QStringList result;
    for (const CardPointer &each : controller->cards()) {
        result.append(each->model->screenshotId());
    }
    return result;
}

QStringList CardsTest::stacking() const
{
    QStringList result;
    for (const FakePanel *shown : panels.stacking()) {
        const auto &cards = controller->cards();
        const auto found =
            std::ranges::find_if(cards, [&](const CardPointer &each) { return each->panel.get() == shown; });
        result.append(found == cards.end() ? QStringLiteral("?") : (*found)->model->screenshotId());
    }
    return result;
}

std::vector<Rect> CardsTest::columnFrames() const
{
    std::vector<Rect> frames;
    for (const CardPointer &each : controller->stackCards()) {
        // A panel that nobody sees is left where it is.
        const bool isLeft = each->isCovered && !each->panel->isVisible();
        frames.push_back(isLeft ? each->layoutFrame.value_or(Rect{}) : each->panel->frame());
    }
    return frames;
}

void CardsTest::movePointerTo(Point location)
{
    screens.setPointerLocation(location);
    monitors.sendGlobal({.type = PointerEventType::mouseMoved, .location = location});
}

} // namespace test
} // namespace lumenfold

#include "tests/components/cards/CardDesk.h"

#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

namespace lumenfold::test {

CardDesk::CardDesk()
    : m_screensConnection(x11::X11Connection::open())
    , m_screens(std::make_unique<X11Screens>(*m_screensConnection))
    , m_config(m_defaults, *m_screens, m_files)
    , m_panels(x11::X11Connection::open(), {.taps = m_taps, .screens = *m_screens})
    , m_views({.panels = m_panels,
               .appearance = m_appearance,
               .screens = *m_screens,
               .monitors = m_monitors,
               .actions = {.actions = m_actions, .config = m_config, .queue = m_queue, .workspace = m_workspace}})
{
    m_controller =
        std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{.panels = m_panels,
                                                                                         .monitors = m_monitors,
                                                                                         .screens = *m_screens,
                                                                                         .config = m_config,
                                                                                         .queue = m_queue,
                                                                                         .views = m_views});
}

CardDesk::~CardDesk() = default;

void CardDesk::startCompositor(CompositorKind kind)
{
    m_compositor = std::make_unique<Compositor>(server(), kind);
    waitUntil("the compositor to be noticed", [this] { return m_panels.isTranslucencyAvailable(); });
}

int CardDesk::scale() const
{
    return static_cast<int>(qApp->devicePixelRatio());
}

QRect CardDesk::pixelsOfCard(const Rect &panelFrame) const
{
    const auto pixel = [this](double edge) { return static_cast<int>(std::floor(edge * scale() + 0.5)); };
    const double height = static_cast<double>(server().size().height()) / scale();
    const QPoint topLeft(pixel(panelFrame.minX()), pixel(height - panelFrame.maxY()));
    const QPoint bottomRight(pixel(panelFrame.maxX()), pixel(height - panelFrame.minY()));
    const int margin = static_cast<int>(AppConfig::previewCardHitMargin) * scale();
    return QRect(topLeft, QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y()))
        .marginsRemoved({margin, margin, margin, margin});
}

QImage CardDesk::screen() const
{
    return rootPicture(server().connection());
}

void CardDesk::settle() const
{
    const auto hasArrived = [](const PreviewWindowController::CardPointer &card) {
        return card->panel->alpha() == 1 && (!card->layoutFrame || card->panel->frame() == *card->layoutFrame) &&
               !(card->isCovered && card->panel->isVisible());
    };
    waitUntil("the cards to arrive", [&] { return std::ranges::all_of(m_controller->cards(), hasArrived); });
    QImage before;
    waitUntil("the screen to come to rest", [&] {
        const QImage after = screen();
        const bool isAtRest = after == before;
        before = after;
        // A compositor shows what it was told a frame or two later.
        (void)staysTrue([] { return true; }, std::chrono::milliseconds(60));
        return isAtRest;
    });
}

} // namespace lumenfold::test

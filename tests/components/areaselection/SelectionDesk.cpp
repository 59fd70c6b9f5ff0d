#include "tests/components/areaselection/SelectionDesk.h"

#include "tests/support/desktop/Pictures.h"

#include <QApplication>

#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace lumenfold {

void PrintTo(const Rect &rect, std::ostream *out)
{
    *out << rect.width << " x " << rect.height << " at " << rect.x << ", " << rect.y;
}

namespace test {
namespace {

using namespace Qt::StringLiterals;

const QString overlayTitle = u"LumenFold Area Selection"_s;

} // namespace

std::string desktopName(const ::testing::TestParamInfo<CompositorKind> &kind)
{
    switch (kind.param) {
    case CompositorKind::none:
        return "WithoutCompositor";
    case CompositorKind::plain:
        return "Composited";
    case CompositorKind::fading:
        return "WithFades";
    }
    return {};
}

SelectionDesk::SelectionDesk()
    : m_service(m_screenshots, m_screens, QCoreApplication::applicationPid())
    , m_controller({.panels = m_panels,
                    .screens = m_screens,
                    .windowList = m_windowList,
                    .queue = m_queue,
                    .captureService = m_service,
                    .ownProcessID = QCoreApplication::applicationPid()})
    , m_pointer(server().display())
    , m_keyboard(server().display())
{
    static const QImage photograph = photographLike(server().size()); // takes longer than most of the tests
    m_background = photograph;
    server().paintRoot(m_background);
    m_pointer.moveTo({3, 3});
}

SelectionDesk::~SelectionDesk()
{
    m_pointer.up();
    runEvents();
}

void SelectionDesk::startCompositor(CompositorKind kind)
{
    m_compositor = std::make_unique<Compositor>(server(), kind);
    waitUntil("the compositor to be noticed", [this] { return m_panels.isTranslucencyAvailable(); });
    waitUntil("the compositor to paint the desktop", [this] { return rootPicture(connection()) == m_background; });
}

void SelectionDesk::startPresenting()
{
    m_controller.present([this](std::optional<Rect> rect, std::optional<Screen> screen) {
        m_endings.push_back({rect, screen});
    });
}

void SelectionDesk::present()
{
    startPresenting();
    waitUntil("the overlays", [this] {
        if (static_cast<std::size_t>(overlays().size()) != m_screens.all().size()) {
            return false;
        }
        const QImage picture = rootPicture(connection());
        for (const WindowInfo &overlay : overlays()) {
            if (!isDimmed(picture, overlay.frame.bottomRight())) {
                return false; // not painted yet, or not faded in yet
            }
        }
        return isKeyboardTaken();
    });
}

bool SelectionDesk::isDimmed(const QImage &picture, QPoint at) const
{
    const QColor whole = m_background.pixelColor(at);
    const QColor shown = picture.pixelColor(at);
    const auto near = [](int value, int undimmed) { return std::abs(value - std::lround(undimmed * 0.65)) <= 2; };
    return near(shown.red(), whole.red()) && near(shown.green(), whole.green()) && near(shown.blue(), whole.blue());
}

bool SelectionDesk::isKeyboardTaken() const
{
    xcb_connection_t *xcb = connection().get();
    const Reply<xcb_grab_keyboard_reply_t> answer(xcb_grab_keyboard_reply(
        xcb, xcb_grab_keyboard(xcb, 0, connection().root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    if (answer && answer->status == XCB_GRAB_STATUS_SUCCESS) {
        xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
        connection().sync();
        return false;
    }
    return answer != nullptr;
}

QList<WindowInfo> SelectionDesk::overlays() const
{
    QList<WindowInfo> found = windowsOnScreen(connection());
    found.removeIf([](const WindowInfo &window) { return window.title != overlayTitle; });
    return found;
}

void SelectionDesk::pressAndDragTo(QPoint from, QPoint to)
{
    m_pointer.moveTo(from);
    m_pointer.down();
    dragOnTo(to);
}

void SelectionDesk::dragOnTo(QPoint to)
{
    const QPoint from = m_pointer.place();
    constexpr int steps = 8;
    for (int step = 1; step <= steps; ++step) {
        m_pointer.moveTo(from + (to - from) * step / steps);
    }
    runEvents();
}

void SelectionDesk::drag(QPoint from, QPoint to)
{
    pressAndDragTo(from, to);
    m_pointer.up();
    runEvents();
}

SelectionDesk::Ending SelectionDesk::ending()
{
    const std::size_t before = m_endings.empty() ? 0 : m_endings.size() - 1;
    waitUntil("the end of the selection", [&] { return m_endings.size() > before; });
    return m_endings.back();
}

QImage SelectionDesk::settledPicture() const
{
    QImage last;
    waitUntil("the screen to come to rest", [&] {
        runEvents();
        last = rootPicture(connection());
        return staysTrue([&] { return rootPicture(connection()) == last; }, std::chrono::milliseconds(60));
    });
    return last;
}

QImage SelectionDesk::capture(const Ending &selection)
{
    if (!selection.rect || !selection.screen) {
        throw std::runtime_error("nothing was selected");
    }
    std::optional<QImage> taken;
    std::exception_ptr error;
    const auto take = [&]() -> QCoro::Task<> {
        try {
            const Image image = co_await m_service.capture(*selection.rect, *selection.screen);
            taken = image.pixels();
        } catch (...) {
            error = std::current_exception();
        }
    };
    take();
    waitUntil("the picture", [&] { return taken || error; });
    if (error) {
        std::rethrow_exception(error);
    }
    return *taken;
}

int SelectionDesk::scale() const
{
    return static_cast<int>(qApp->devicePixelRatio());
}

Rect SelectionDesk::points(const QRect &pixels) const
{
    const double s = scale();
    const double height = server().size().height() / s;
    return {pixels.x() / s, height - (pixels.y() + pixels.height()) / s, pixels.width() / s, pixels.height() / s};
}

void SelectionDesk::runEvents() const
{
    for (int round = 0; round < 3; ++round) {
        QApplication::sync();
        QApplication::processEvents();
        connection().sync();
    }
}

} // namespace test
} // namespace lumenfold

#include "platform/screencapture/X11ScreenshotManager.h"

#include "platform/image/EncodingPool.h"
#include "platform/screencapture/PixelCrop.h"
#include "platform/screencapture/X11OwnWindowTracker.h"
#include "platform/screencapture/X11PixelReader.h"
#include "platform/screencapture/X11Scene.h"
#include "platform/x11/QtBarrier.h"
#include "platform/x11/X11Properties.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QPromise>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include <xcb/composite.h>

namespace lumenfold {
namespace {

using namespace x11;
using namespace Qt::StringLiterals;

/// How far beyond a window's edges a compositing manager's shadow may reach, in pixels. Their defaults stay below 30.
constexpr int shadowReach = 48;

PlatformError captureError(CaptureErrorCode code, const QString &description)
{
    return {
        .domain = QString::fromLatin1(captureErrorDomain), .code = static_cast<int>(code), .description = description};
}

PlatformError cancelled()
{
    return captureError(CaptureErrorCode::cancelled, u"the capture was given up"_s);
}

PlatformError displayGone()
{
    return captureError(CaptureErrorCode::displayGone, u"the display is not connected any more"_s);
}

/// A pixel of the picture's screen with nothing but the background in it.
std::optional<QPoint> barePlace(const QRect &screen, const std::vector<StackedWindow> &windows, const QRegion &own)
{
    QRegion bare = QRegion(screen) - own;
    for (const StackedWindow &window : windows) {
        bare -= window.frame.adjusted(-shadowReach, -shadowReach, shadowReach, shadowReach);
    }
    return bare.isEmpty() ? std::nullopt : std::optional(bare.begin()->center());
}

/// Returns when the picture's PNG is there, which other programs ask for at once, or takes long. What follows a
/// capture, cards that come back to the screen, keeps the server, the compositing manager and so all processors busy:
/// the PNG would take half as long again, and whoever pastes would wait for all of it.
QCoro::Task<> encodedSoon(Image image)
{
    // As long as the cards were given to leave the screen; 4K takes two processors some 40.
    constexpr std::chrono::milliseconds patience{60};
    const auto done = std::make_shared<QPromise<void>>();
    done->start();
    QObject here;
    image.whenEncoded(&here, [done](const std::optional<QByteArray> &) { done->finish(); });
    QTimer::singleShot(patience, Qt::PreciseTimer, &here, [done] { done->finish(); });
    co_await done->future();
}

QImage scaled(const QImage &image, PixelSize size)
{
    return image.scaled(size.width, size.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace

struct X11ScreenshotManager::State {
    State(X11Connection &usedConnection, const X11Screens &usedScreens, OwnWindowTraces &usedTraces)
        : connection(usedConnection)
        , screens(usedScreens)
        , traces(usedTraces)
        , reader(usedConnection)
        , formats(usedConnection)
        , barrier(usedConnection)
        , tracker(usedConnection, usedTraces)
    {
        compositorSelection =
            connection.atom(QByteArray("_NET_WM_CM_S" + QByteArray::number(connection.screenNumber())).constData());
        if (connection.extension(&xcb_composite_id) != nullptr) {
            // Versions before 0.2 cannot name a window's contents; every client must say which one it speaks.
            (void)connection.reply(xcb_composite_query_version_reply,
                                   xcb_composite_query_version(connection.xcb(), 0, 4));
            xcb_composite_redirect_subwindows(connection.xcb(), connection.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
            // From now on, not from the event loop's first rest: what is covered before that is lost.
            xcb_flush(connection.xcb());
        }
    }

    X11Connection &connection;
    const X11Screens &screens;
    OwnWindowTraces &traces;
    X11PixelReader reader;
    X11PictureFormats formats;
    QtBarrier barrier;
    X11OwnWindowTracker tracker;
    xcb_atom_t compositorSelection = XCB_ATOM_NONE;
};

/// What one capture reads. Root pixels.
struct X11ScreenshotManager::Plan {
    DisplayID displayID = 0;
    QRect screen;
    QRect source;
    PixelSize output;
    bool leavesOwnWindowsOut = false;
    /// A compositing manager runs.
    bool isBlended = false;
};

X11ScreenshotManager::X11ScreenshotManager(X11Connection &connection, const X11Screens &screens,
                                           OwnWindowTraces &traces)
    : m_state(std::make_shared<State>(connection, screens, traces))
{
}

X11ScreenshotManager::~X11ScreenshotManager() = default;

void X11ScreenshotManager::avoidSharedMemory()
{
    m_state->reader.avoidSharedMemory();
}

void X11ScreenshotManager::expectCapture(DisplayID display)
{
    if (const ScreenSpace::PlacedScreen *screen = m_state->screens.space().screen(display)) {
        m_state->reader.prepare(screen->native);
    }
}

QCoro::Task<ScreenshotManager::ContentResult> X11ScreenshotManager::shareableContent(ShareableContentRequest)
{
    return listContent(m_state);
}

QCoro::Task<ScreenshotManager::ImageResult> X11ScreenshotManager::captureImage(ContentFilter filter,
                                                                               StreamConfiguration configuration)
{
    return capture(m_state, std::move(filter), configuration);
}

QCoro::Task<ScreenshotManager::ContentResult> X11ScreenshotManager::listContent(std::weak_ptr<State> weak)
{
    X11Connection &connection = weak.lock()->connection;
    const auto clientsAsked = requestProperty(connection, connection.root(), connection.atom("_NET_CLIENT_LIST"),
                                              XCB_ATOM_WINDOW, maxClients);
    const auto clients = co_await connection.replyLater<xcb_get_property_reply_t>(clientsAsked.sequence);
    if (!clients) {
        co_return tl::unexpected(clients.error());
    }
    std::vector<xcb_get_property_cookie_t> pidsAsked;
    for (const xcb_window_t client : itemsOf(**clients, XCB_ATOM_WINDOW)) {
        pidsAsked.push_back(requestProperty(connection, client, connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 1));
    }
    ShareableContent content{.applications = {{.processID = QCoreApplication::applicationPid()}}};
    for (const auto cookie : pidsAsked) {
        const auto answer = co_await connection.replyLater<xcb_get_property_reply_t>(cookie.sequence);
        const auto pid = answer ? itemsOf(**answer, XCB_ATOM_CARDINAL) : std::vector<std::uint32_t>();
        const RunningApplication application{.processID = pid.empty() ? 0 : qint64{pid.front()}};
        if (application.processID != 0 &&
            std::ranges::find(content.applications, application) == content.applications.end()) {
            content.applications.push_back(application);
        }
    }
    const auto state = weak.lock();
    if (!state) {
        co_return tl::unexpected(cancelled());
    }
    for (const auto &screen : state->screens.space().screens()) {
        content.displays.push_back(
            {.displayID = screen.displayID, .width = screen.frame.width, .height = screen.frame.height});
    }
    co_return content;
}

QCoro::Task<ScreenshotManager::ImageResult>
X11ScreenshotManager::capture(std::weak_ptr<State> weak, ContentFilter filter, StreamConfiguration configuration)
{
    const State *state = weak.lock().get();
    const ScreenSpace::PlacedScreen *screen = state->screens.space().screen(filter.display.displayID);
    if (screen == nullptr) {
        co_return tl::unexpected(displayGone());
    }
    const auto crop = pixelCrop({screen->native.width(), screen->native.height()}, screen->scale, configuration);
    if (!crop) {
        co_return tl::unexpected(captureError(CaptureErrorCode::invalidSize, u"not the size of a picture"_s));
    }
    const Plan plan{.displayID = screen->displayID,
                    .screen = screen->native,
                    .source = crop->source.translated(screen->native.topLeft()),
                    .output = crop->output,
                    .leavesOwnWindowsOut = std::ranges::find(filter.excludingApplications,
                                                             RunningApplication{QCoreApplication::applicationPid()}) !=
                                           filter.excludingApplications.end()};

    auto pixels = co_await readPixels(weak, plan);
    if (weak.expired()) {
        co_return tl::unexpected(cancelled());
    }
    const ScreenSpace::PlacedScreen *now = state->screens.space().screen(plan.displayID);
    if (now == nullptr || now->native != plan.screen) {
        co_return tl::unexpected(displayGone());
    }
    if (!pixels) {
        co_return tl::unexpected(pixels.error());
    }
    if (crop->isScaled()) {
        // GCC 12 destroys what a lambda inside a co_await expression holds twice.
        const QFuture<QImage> made =
            makePicture(encodingPool(), [image = *pixels, size = plan.output] { return scaled(image, size); });
        pixels = co_await made;
    }
    const Image image = Image::fromScreenPixels(std::move(*pixels));
    co_await encodedSoon(image);
    co_return image;
}

QCoro::Task<tl::expected<QImage, PlatformError>> X11ScreenshotManager::readPixels(std::weak_ptr<State> weak, Plan plan)
{
    State *state = weak.lock().get();
    QRegion own;
    if (plan.leavesOwnWindowsOut) {
        co_await state->barrier.passed();
        if (weak.expired()) {
            co_return tl::unexpected(cancelled());
        }
        const auto compositor = co_await state->connection.replyLater<xcb_get_selection_owner_reply_t>(
            xcb_get_selection_owner(state->connection.xcb(), state->compositorSelection).sequence);
        if (weak.expired()) {
            co_return tl::unexpected(cancelled());
        }
        plan.isBlended = compositor && (*compositor)->owner != XCB_NONE;
        // Without one, a window is gone from the screen when it is unmapped.
        own = plan.isBlended ? state->traces.suspectRegion(OwnWindowTraces::Clock::now(), shadowReach)
                             : state->traces.standingRegion();
        own &= plan.source.intersected(plan.screen);
    }
    if (own.isEmpty() && plan.screen.contains(plan.source)) {
        co_return co_await state->reader.read(state->connection.root(), plan.source);
    }
    co_return co_await readWithout(weak, plan, own);
}

QCoro::Task<tl::expected<QImage, PlatformError>> X11ScreenshotManager::readWithout(std::weak_ptr<State> weak, Plan plan,
                                                                                   QRegion own)
{
    State *state = weak.lock().get();
    X11Connection &connection = state->connection;
    Scene scene{.picture = plan.source, .screen = plan.screen, .rebuilt = own, .isBlended = plan.isBlended};
    if (!own.isEmpty()) {
        auto windows = co_await stackedWindows(connection, plan.screen);
        if (!windows) {
            co_return tl::unexpected(windows.error());
        }
        scene.background.pixmap = co_await wallpaper(connection);
        if (weak.expired()) {
            co_return tl::unexpected(cancelled());
        }
        std::erase_if(*windows, [&](const StackedWindow &window) { return state->tracker.isOwn(window.id); });
        scene.windows = std::move(*windows);
        if (plan.isBlended) {
            scene.background.sample = barePlace(plan.screen, scene.windows, own);
        }
    }
    const ServerPixmap picture = drawScene(connection, state->formats, scene);
    co_return co_await state->reader.read(picture.id(), QRect(QPoint(0, 0), plan.source.size()));
}

} // namespace lumenfold

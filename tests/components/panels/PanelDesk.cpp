#include "tests/components/panels/PanelDesk.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

/// The desktop background; no panel has this colour.
const QColor background(10, 60, 30);

Reply<xcb_query_tree_reply_t> treeOf(const XConnection &connection, xcb_window_t window)
{
    return Reply<xcb_query_tree_reply_t>(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
}

std::vector<xcb_window_t> childrenOf(const XConnection &connection, xcb_window_t window)
{
    const auto tree = treeOf(connection, window);
    if (!tree) {
        return {};
    }
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    return {children, children + xcb_query_tree_children_length(tree.get())};
}

} // namespace

ColouredView::ColouredView(const QColor &colour, int margin) : m_colour(colour), m_margin(margin) {}

void ColouredView::setColour(const QColor &colour)
{
    m_colour = colour;
    update();
}

void ColouredView::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect().marginsRemoved({m_margin, m_margin, m_margin, m_margin}), m_colour);
}

void ColouredView::mousePressEvent(QMouseEvent *)
{
    ++m_clicks;
}

QRegion RoundView::opaqueShape(double scale) const
{
    return {QRect(rect().topLeft() * scale, rect().size() * scale), QRegion::Ellipse};
}

void RoundView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setBrush(Qt::blue);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(rect());
}

PanelDesk::PanelDesk()
    : m_screensConnection(x11::X11Connection::open()), m_screens(std::make_unique<X11Screens>(*m_screensConnection))
{
    QImage picture(server().size(), QImage::Format_RGB32);
    picture.fill(background);
    server().paintRoot(picture);
    m_factory = std::make_unique<X11PanelFactory>(
        x11::X11Connection::open(), X11PanelFactory::Surroundings{.taps = m_taps,
                                                                  .screens = *m_screens,
                                                                  .onLeftWithoutTrace = [this](std::uint32_t window) {
                                                                      m_leftWithoutTrace.push_back(window);
                                                                  }});
}

PanelDesk::~PanelDesk()
{
    if (m_windowManager) {
        m_windowManager.reset();
        // What it announced outlives it, and says that it is still there.
        for (const char *announcement : {"_NET_SUPPORTING_WM_CHECK", "_NET_SUPPORTED", "_NET_ACTIVE_WINDOW",
                                         "_NET_CURRENT_DESKTOP", "_NET_NUMBER_OF_DESKTOPS", "_NET_CLIENT_LIST"}) {
            xcb_delete_property(connection().get(), connection().root(), connection().atom(announcement));
        }
        connection().sync();
    }
}

void PanelDesk::startWindowManager(WindowManagerKind kind)
{
    m_windowManager = std::make_unique<WindowManager>(server(), kind);
}

void PanelDesk::startCompositor(CompositorKind kind)
{
    m_compositor = std::make_unique<Compositor>(server(), kind);
    waitUntil("the compositor to be noticed", [this] { return m_factory->isTranslucencyAvailable(); });
}

void PanelDesk::startCompositor(const QByteArray &picomConfiguration)
{
    m_compositor = std::make_unique<Compositor>(server(), picomConfiguration);
    waitUntil("the compositor to be noticed", [this] { return m_factory->isTranslucencyAvailable(); });
}

void PanelDesk::stopCompositor()
{
    m_compositor.reset();
    waitUntil("the compositor's end to be noticed", [this] { return !m_factory->isTranslucencyAvailable(); });
}

std::unique_ptr<Panel> PanelDesk::makePanel(const Rect &frame, PanelOptions options)
{
    ++m_panelsMade;
    if (options.title.isEmpty()) {
        options.title = u"panel %1"_s.arg(m_panelsMade);
    }
    return m_factory->makePanel(options, frame);
}

std::unique_ptr<Panel> PanelDesk::showPanel(const Rect &frame, const QColor &colour, PanelOptions options)
{
    auto panel = makePanel(frame, std::move(options));
    panel->setContentView(std::make_unique<ColouredView>(colour));
    panel->orderFrontRegardless();
    settle();
    const Rect screen{0, 0, screenSize().width, screenSize().height};
    if (screen.contains(frame.center())) {
        EXPECT_TRUE(becomes(frame.center(), colour)) << "the panel is not to be seen";
    }
    return panel;
}

xcb_window_t PanelDesk::windowOf(const QString &title) const
{
    for (const xcb_window_t window : childrenOf(connection(), connection().root())) {
        if (QString::fromUtf8(connection().property(window, "_NET_WM_NAME")) == title) {
            return window;
        }
    }
    return XCB_NONE;
}

bool PanelDesk::isMapped(xcb_window_t window) const
{
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection().get(), xcb_get_window_attributes(connection().get(), window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool PanelDesk::isAbove(xcb_window_t upper, xcb_window_t lower) const
{
    const auto stack = childrenOf(connection(), connection().root());
    const auto upperPlace = std::ranges::find(stack, topLevelOf(upper));
    const auto lowerPlace = std::ranges::find(stack, topLevelOf(lower));
    return upperPlace != stack.end() && lowerPlace != stack.end() && upperPlace > lowerPlace;
}

xcb_window_t PanelDesk::topLevelOf(xcb_window_t window) const
{
    while (true) {
        const auto tree = treeOf(connection(), window);
        if (!tree || tree->parent == connection().root()) {
            return window;
        }
        window = tree->parent;
    }
}

QRect PanelDesk::pixelsOf(const Rect &points) const
{
    const auto pixel = [this](double edge) { return static_cast<int>(std::floor(edge * scale() + 0.5)); };
    const double height = screenSize().height;
    const QPoint topLeft(pixel(points.minX()), pixel(height - points.maxY()));
    const QPoint bottomRight(pixel(points.maxX()), pixel(height - points.minY()));
    return {topLeft, QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y())};
}

QColor PanelDesk::colourAt(Point place) const
{
    return rootPicture(connection(), QRect(pixelAt(place), QSize(1, 1))).pixelColor(0, 0);
}

QPoint PanelDesk::pixelAt(Point place) const
{
    return {static_cast<int>(place.x * scale()), static_cast<int>((screenSize().height - place.y) * scale())};
}

bool PanelDesk::becomes(Point place, const QColor &colour) const
{
    return waitFor([&] { return colourAt(place).rgb() == colour.rgb(); });
}

void PanelDesk::settle() const
{
    // What the program asks for in answer to one round may cause another.
    for (int round = 0; round < 3; ++round) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::sync();
        connection().sync();
    }
    QApplication::processEvents();
}

int PanelDesk::scale() const
{
    return static_cast<int>(qApp->devicePixelRatio());
}

Size PanelDesk::screenSize() const
{
    const QSize pixels = server().size();
    return {static_cast<double>(pixels.width()) / scale(), static_cast<double>(pixels.height()) / scale()};
}

} // namespace lumenfold::test

#include "tests/components/screens/ScreensTest.h"

#include "tests/support/desktop/Wait.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace lumenfold::test {
namespace {

XServer *theServer = nullptr;

/// The toolkit hears of new screens later than ours do, and their scale is a guess until then.
bool isKnownToTheToolkit(const ScreenSpace::PlacedScreen &placed)
{
    return std::ranges::any_of(QGuiApplication::screens(), [&](const QScreen *known) {
        return known->geometry() == placed.qt && known->devicePixelRatio() == placed.scale;
    });
}

} // namespace

void ScreensTest::useServer(XServer &server)
{
    theServer = &server;
}

XServer &ScreensTest::server()
{
    return *theServer;
}

ScreensTest::ScreensTest() : m_connection(x11::X11Connection::open()), m_screens(makeScreens())
{
    QObject::connect(m_screens.get(), &Screens::changed, m_screens.get(), [this] { ++m_changes; });
}

ScreensTest::~ScreensTest()
{
    plugInOne();
}

void ScreensTest::plugInTwo()
{
    server().setMonitors({{.name = "left", .frame = left}, {.name = "right", .frame = right, .primary = true}});
    ASSERT_TRUE(waitFor([this] {
        const auto &placed = m_screens->space().screens();
        return placed.size() == 2 && std::ranges::all_of(placed, isKnownToTheToolkit);
    }));
}

void ScreensTest::plugInOne()
{
    server().setMonitors({});
    ASSERT_TRUE(waitFor([this] {
        const auto &placed = m_screens->space().screens();
        return placed.size() == 1 && placed.front().native == whole;
    }));
}

Screen ScreensTest::screenAt(const QRect &native) const
{
    const auto &placed = m_screens->space().screens();
    for (std::size_t index = 0; index < placed.size(); ++index) {
        if (placed[index].native == native) {
            return m_screens->all().at(index);
        }
    }
    ADD_FAILURE() << "no screen of " << native.width() << " x " << native.height();
    return {};
}

void ScreensTest::movePointer(QPoint native) const
{
    const XConnection &connection = server().connection();
    xcb_warp_pointer(connection.get(), XCB_NONE, connection.root(), 0, 0, 0, 0, static_cast<std::int16_t>(native.x()),
                     static_cast<std::int16_t>(native.y()));
    connection.sync();
}

} // namespace lumenfold::test

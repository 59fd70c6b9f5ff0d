#include "tests/components/screens/ScreensTest.h"

#include "tests/support/desktop/Wait.h"

namespace lumenfold::test {
namespace {

XServer *theServer = nullptr;

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
    ASSERT_TRUE(waitFor([this] { return m_screens->all().size() == 2; }));
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

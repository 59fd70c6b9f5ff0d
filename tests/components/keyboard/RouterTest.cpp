#include "tests/components/keyboard/RouterTest.h"

#include "tests/support/desktop/Wait.h"

#include <algorithm>
#include <utility>

namespace lumenfold::test {
namespace {

constexpr auto markerKey = "F12";
/// A combination that no test uses.
constexpr std::uint32_t unusedKeyCode = 100;

} // namespace

RouterTest::RouterTest()
    : m_server({.extraArguments = {QStringLiteral("-ardelay"), QString::number(repeatDelay),
                                   QStringLiteral("-arinterval"), QString::number(repeatInterval)}})
    , m_keyboard(m_server.display())
    , m_front(m_server)
    , m_router(x11::X11KeyboardRouter::start(m_server.display()))
{
    m_front.focus();
    if (!m_router) {
        throw std::runtime_error("the router does not start");
    }
    m_router->hotKeys().installPressHandler([this](HotKeyID pressed) -> HotKeyStatus {
        for (HotKey &hotKey : m_hotKeys) {
            hotKey.presses += hotKey.id == pressed.id ? 1 : 0;
        }
        return noHotKeyError;
    });
}

RouterTest::~RouterTest() = default;

HotKeyStatus RouterTest::registerHotKey(std::uint32_t id, std::uint32_t keyCode, std::uint32_t modifiers)
{
    auto registration = m_router->hotKeys().registerHotKey(keyCode, modifiers, {.signature = 0, .id = id});
    EXPECT_EQ(registration.ref != nullptr, registration.status == noHotKeyError);
    if (registration.ref) {
        m_hotKeys.push_back({.id = id, .ref = std::move(registration.ref)});
    }
    return registration.status;
}

void RouterTest::unregister(std::uint32_t id)
{
    for (HotKey &hotKey : m_hotKeys) {
        if (hotKey.id == id) {
            hotKey.ref.reset();
        }
    }
    settle();
}

int RouterTest::pressed(std::uint32_t id) const
{
    int presses = 0;
    for (const HotKey &hotKey : m_hotKeys) {
        presses += hotKey.id == id ? hotKey.presses : 0;
    }
    return presses;
}

bool RouterTest::waitForPress(std::uint32_t id, int times) const
{
    return waitFor([&] { return pressed(id) >= times; }) && pressed(id) == times;
}

std::unique_ptr<KeyEventTap> RouterTest::watchingTap(TapScope scope, TapDisposition disposition)
{
    auto tap = m_router->taps().createTap(scope, [this, disposition](const KeyEvent &event) {
        m_seen.push_back(event);
        return disposition;
    });
    if (tap) {
        tap->enable();
        settle();
    }
    return tap;
}

std::vector<std::uint32_t> RouterTest::seenKeys() const
{
    std::vector<std::uint32_t> keys;
    for (const KeyEvent &event : m_seen) {
        if (event.type == KeyEventType::keyDown) {
            keys.push_back(event.keyCode);
        }
    }
    return keys;
}

void RouterTest::settle()
{
    // Commands run in order, and registering waits for its own end.
    const auto registration = m_router->hotKeys().registerHotKey(unusedKeyCode, optionCommand, {});
    EXPECT_EQ(registration.status, noHotKeyError);
}

QString RouterTest::typed()
{
    static const QStringList names{
        QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),      QStringLiteral("d"),
        QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("Escape"), QString::fromLatin1(markerKey),
    };
    QStringList keys;
    for (const TestWindow::KeyPress &press : m_front.keyPresses()) {
        const auto name = std::ranges::find_if(
            names, [&](const QString &key) { return m_keyboard.codeOf(key.toStdString()) == press.code; });
        if (name != names.end()) {
            keys.append(*name);
        }
    }
    return keys.join(QLatin1Char(' '));
}

QString RouterTest::typedBeforeMarker()
{
    const QString marker = QString::fromLatin1(markerKey);
    m_keyboard.press(markerKey);
    if (!waitFor([&] { return typed().endsWith(marker); })) {
        return QStringLiteral("(the front window gets no keys) ") + typed();
    }
    QString text = typed();
    text.chop(marker.size());
    return text.trimmed();
}

bool RouterTest::waitForTyped(const QString &text)
{
    return waitFor([&] { return typed() == text; });
}

} // namespace lumenfold::test

#include "platform/keyboard/x11/KeyRouting.h"

#include "platform/keyboard/x11/RouterMailbox.h"

#include <QDebug>

#include <poll.h>

#include <algorithm>
#include <utility>

namespace lumenfold::x11 {

KeyRouting::KeyRouting(std::unique_ptr<KeyboardConnection> connection, RouterMailbox &mailbox, TapChain &taps,
                       Reports reports)
    : m_connection(std::move(connection))
    , m_mailbox(mailbox)
    , m_taps(taps)
    , m_reports(std::move(reports))
    , m_hotKeys(*m_connection)
{
}

void KeyRouting::run()
{
    loadMap();
    while (!m_stopping) {
        for (const auto &command : m_mailbox.take()) {
            command(*this);
        }
        handleAnswer();
        handleTimers();
        // Ends with a look that finds nothing after a flush, because both may take events from the socket.
        do {
            m_connection->flush();
        } while (handleInputs());
        noticeLostConnection();
        if (!m_stopping) {
            sleep();
        }
    }
    // A press may also be on its way to us that nobody has looked at. Where nothing is frozen, replaying does nothing.
    m_hotKeys.clear();
    m_connection->replay();
    // A server that sees the connection close does not read what was sent before.
    m_connection->sync();
}

HotKeyStatus KeyRouting::addHotKey(const RegisteredHotKey &hotKey)
{
    return m_hotKeys.add(hotKey, m_map);
}

void KeyRouting::removeHotKey(HotKeyToken token)
{
    m_hotKeys.remove(token);
}

void KeyRouting::tapsChanged()
{
    updateHold();
}

void KeyRouting::loadMap()
{
    const std::optional<KeyboardMap> map = m_connection->loadMap();
    if (!map) {
        qWarning().noquote().nospace() << "LumenFold: the keyboard's map cannot be read";
    } else if (*map != m_map) {
        m_map = *map;
        m_hotKeys.useMap(m_map);
    }
}

bool KeyRouting::handleInputs()
{
    bool any = false;
    // While a press is pending, the keyboard is frozen and nothing else is urgent.
    while (!m_pending && !m_isLost) {
        const auto input = m_connection->nextInput();
        if (!input) {
            break;
        }
        any = true;
        switch (input->type) {
        case KeyboardConnection::Input::Type::press:
            press(*input);
            break;
        case KeyboardConnection::Input::Type::release:
            release(input->keycode);
            break;
        case KeyboardConnection::Input::Type::watchedRelease:
            forgetReplayed(KeySet().set(input->keycode));
            break;
        case KeyboardConnection::Input::Type::mapChanged:
            m_mapReloadAt = Clock::now() + mapSettleTime;
            break;
        }
    }
    return any;
}

void KeyRouting::handleAnswer()
{
    if (!m_pending) {
        return;
    }
    if (const auto disposition = m_taps.takeAnswer()) {
        decide(*std::exchange(m_pending, std::nullopt), *disposition);
        updateHold();
    } else if (Clock::now() >= m_pending->deadline) {
        giveUp();
        updateHold();
    }
}

void KeyRouting::handleTimers()
{
    const Clock::time_point now = Clock::now();
    if (m_pending || m_isLost) {
        return;
    }
    if (m_mapReloadAt && now >= *m_mapReloadAt) {
        m_mapReloadAt.reset();
        loadMap();
    }
    if (m_holdRetryAt && now >= *m_holdRetryAt) {
        tryToHoldKeyboard();
    }
}

void KeyRouting::noticeLostConnection()
{
    if (m_isLost || m_connection->isUsable()) {
        return;
    }
    m_isLost = true;
    m_pending.reset();
    m_hold = Hold::none;
    qWarning().noquote().nospace() << "LumenFold: lost the keyboard; hotkeys do not work any more";
    m_reports.connectionLost();
}

void KeyRouting::sleep()
{
    std::optional<Clock::time_point> wakeAt;
    const auto wakeNoLaterThan = [&wakeAt](std::optional<Clock::time_point> time) {
        if (time) {
            wakeAt = wakeAt ? std::min(*wakeAt, *time) : *time;
        }
    };
    pollfd descriptors[] = {{.fd = m_mailbox.descriptor(), .events = POLLIN, .revents = 0},
                            {.fd = m_connection->descriptor(), .events = POLLIN, .revents = 0}};
    nfds_t count = 2;
    if (m_pending) {
        wakeNoLaterThan(m_pending->deadline);
        count = 1;
    } else if (m_isLost) {
        count = 1;
    } else {
        wakeNoLaterThan(m_mapReloadAt);
        wakeNoLaterThan(m_holdRetryAt);
    }
    int timeout = -1;
    if (wakeAt) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*wakeAt - Clock::now());
        timeout = std::max(0, static_cast<int>(left.count()));
    }
    ::poll(descriptors, count, timeout);
}

void KeyRouting::press(const KeyboardConnection::Input &input)
{
    const xcb_keycode_t keycode = input.keycode;
    if (m_hold == Hold::none) {
        m_hold = Hold::hotKey;
        m_activatingKey = keycode;
    }
    PendingPress press{.keycode = keycode, .combination = m_map.combination(keycode, input.state)};
    const bool isHotKey = press.combination && m_hotKeys.find(*press.combination);
    if (m_map.isModifier(keycode) && !isHotKey && (m_hold == Hold::keyboard || keycode != m_activatingKey)) {
        // Giving it back would end the grab in the middle of a combination.
        m_taken.set(keycode);
        m_connection->swallow();
        return;
    }
    if (m_hold == Hold::hotKey && m_replayed[keycode]) {
        passOn(keycode);
        return;
    }
    if (m_taken[keycode]) {
        press.repeat = Repeat::ofTakenPress;
    } else if (m_hold == Hold::keyboard && (m_passed[keycode] || m_downBefore[keycode])) {
        press.repeat = Repeat::ofOtherPress;
    }
    // A repeat fires nothing, so only those who see every press see it.
    const PressKind kind = isHotKey && press.repeat == Repeat::no ? PressKind::ofHotKey : PressKind::ofOtherKey;
    if (m_taps.wants(kind)) {
        if (std::optional<KeyEvent> event = m_map.keyDown(keycode, input.state, m_connection->activeLayout())) {
            ask(press, *std::move(event), kind);
            return;
        }
    }
    decide(press, TapDisposition::passOn);
}

void KeyRouting::ask(const PendingPress &press, KeyEvent event, PressKind kind)
{
    event.isAutorepeat = press.repeat != Repeat::no;
    m_pending = press;
    m_pending->deadline = Clock::now() + answerTime;
    m_reports.ask(m_taps.open(kind), event, kind);
}

void KeyRouting::decide(const PendingPress &press, TapDisposition disposition)
{
    const RegisteredHotKey *hotKey =
        press.combination && press.repeat == Repeat::no ? m_hotKeys.find(*press.combination) : nullptr;
    if (press.repeat == Repeat::ofTakenPress || disposition == TapDisposition::swallow) {
        take(press.keycode);
    } else if (hotKey) {
        m_reports.hotKeyPressed(*hotKey);
        take(press.keycode);
    } else {
        m_passed.set(press.keycode);
        passOn(press.keycode);
    }
}

void KeyRouting::giveUp()
{
    const PendingPress press = *std::exchange(m_pending, std::nullopt);
    if (auto slow = m_taps.giveUp()) {
        m_reports.tapDisabled(std::move(slow));
    }
    if (press.repeat == Repeat::ofTakenPress) {
        take(press.keycode);
        return;
    }
    giveBackHotKey(press.keycode);
}

void KeyRouting::giveBackHotKey(xcb_keycode_t keycode)
{
    m_connection->watchReleases(true);
    m_replayed.set(keycode);
    passOn(keycode);
    // The key may have been released while the keyboard was frozen, before anybody watched.
    forgetReplayed(~m_connection->pressedKeys());
}

void KeyRouting::forgetReplayed(const KeySet &released)
{
    m_replayed &= ~released;
    if (m_replayed.none()) {
        m_connection->watchReleases(false);
    }
}

void KeyRouting::take(xcb_keycode_t keycode)
{
    m_taken.set(keycode);
    if (m_hold == Hold::hotKey && keycode != m_activatingKey) {
        // The grab ends with the other key, and the repeats of this one would reach the front window.
        takeOverKeyboard();
    }
    m_connection->swallow();
}

void KeyRouting::passOn(xcb_keycode_t keycode)
{
    m_connection->replay();
    m_taken.reset(keycode);
    m_hold = Hold::none;
    if (m_taps.wantsWholeKeyboard()) {
        beginToHoldKeyboard();
    }
    if (m_hold == Hold::none) {
        // The server repeats only the key that was pressed last, and that one is not ours any more.
        m_taken.reset();
        m_passed.reset();
    }
}

void KeyRouting::release(xcb_keycode_t keycode)
{
    const bool wasPassed = m_passed[keycode];
    m_taken.reset(keycode);
    m_passed.reset(keycode);
    m_downBefore.reset(keycode);
    if (m_hold == Hold::hotKey && keycode == m_activatingKey) {
        // The server ended the grab with this event.
        m_hold = Hold::none;
        m_taken.reset();
        updateHold();
    } else if (m_hold == Hold::keyboard && !m_taps.wantsWholeKeyboard() && !isAnyKeyTaken()) {
        // Given back while it is frozen, so that nothing typed since is lost.
        updateHold();
    } else if (m_hold == Hold::keyboard && m_taps.wantsWholeKeyboard() && wasPassed) {
        passOn(keycode);
    } else {
        m_connection->swallow();
    }
}

void KeyRouting::updateHold()
{
    if (m_pending || m_isLost) {
        return;
    }
    if (m_taps.wantsWholeKeyboard()) {
        if (m_hold != Hold::keyboard && !m_holdRetryAt) {
            beginToHoldKeyboard();
        }
        return;
    }
    m_holdRetryAt.reset();
    if (m_hold == Hold::keyboard && !isAnyKeyTaken()) {
        m_connection->releaseKeyboard();
        m_hold = Hold::none;
        m_taken.reset();
        m_passed.reset();
    }
}

void KeyRouting::beginToHoldKeyboard()
{
    m_holdRetryEnd = Clock::now() + holdRetryTime;
    tryToHoldKeyboard();
}

void KeyRouting::tryToHoldKeyboard()
{
    m_holdRetryAt.reset();
    if (m_hold == Hold::keyboard || !m_taps.wantsWholeKeyboard()) {
        return;
    }
    takeOverKeyboard();
    if (m_hold == Hold::keyboard) {
        m_connection->swallow();
    } else if (const auto now = Clock::now(); now < m_holdRetryEnd) {
        m_holdRetryAt = now + holdRetryInterval;
    } else {
        qWarning().noquote().nospace() << "LumenFold: another program holds the keyboard";
    }
}

void KeyRouting::takeOverKeyboard()
{
    if (m_connection->holdKeyboard() == KeyboardConnection::HoldResult::held) {
        m_hold = Hold::keyboard;
        const KeySet pressed = m_connection->pressedKeys();
        m_taken &= pressed;
        m_passed &= pressed;
        m_downBefore = pressed & ~m_taken & ~m_passed;
    }
}

bool KeyRouting::isAnyKeyTaken() const
{
    for (std::size_t keycode = 0; keycode < m_taken.size(); ++keycode) {
        if (m_taken[keycode] && !m_map.isModifier(static_cast<xcb_keycode_t>(keycode))) {
            return true;
        }
    }
    return false;
}

} // namespace lumenfold::x11

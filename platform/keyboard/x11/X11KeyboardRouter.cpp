#include "platform/keyboard/x11/X11KeyboardRouter.h"

#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/KeyEventTap.h"
#include "platform/keyboard/x11/GrabFocusFilter.h"
#include "platform/keyboard/x11/KeyRouting.h"
#include "platform/keyboard/x11/KeyboardConnection.h"
#include "platform/keyboard/x11/RouterMailbox.h"
#include "platform/keyboard/x11/TapChain.h"

#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <atomic>
#include <future>
#include <set>
#include <utility>

namespace lumenfold::x11 {

/// What the main thread's side and the router's thread share, and the thread itself.
class X11KeyboardRouter::Core {
public:
    Core() : m_taps([this] { m_mailbox.wake(); }) {}

    void start(std::unique_ptr<KeyboardConnection> connection);
    /// Ends the thread; what it still had to tell is dropped.
    void stop();

    /// Runs on the router's thread. False when it has ended.
    bool post(RouterMailbox::Command command) { return m_mailbox.post(std::move(command)); }

    [[nodiscard]] TapChain &taps() { return m_taps; }
    [[nodiscard]] bool isConnected() const { return m_isConnected; }

    // The rest is the main thread's.

    HotKeyService::PressHandler pressHandler;
    /// The registrations that still stand: a press of another one is not told.
    std::set<HotKeyToken> hotKeys;

private:
    [[nodiscard]] KeyRouting::Reports reports();
    void tellPressed(const RegisteredHotKey &hotKey) const;

    RouterMailbox m_mailbox;
    TapChain m_taps;
    std::atomic<bool> m_isConnected = true;
    GrabFocusFilter m_focusFilter;
    /// Lives on the main thread; what is queued for the main thread goes with it.
    std::unique_ptr<QObject> m_mainThread;
    std::unique_ptr<QThread> m_thread;
};

void X11KeyboardRouter::Core::start(std::unique_ptr<KeyboardConnection> connection)
{
    m_mainThread = std::make_unique<QObject>();
    m_thread.reset(QThread::create([this, held = std::move(connection)]() mutable {
        KeyRouting(std::move(held), m_mailbox, m_taps, reports()).run();
        m_mailbox.close();
    }));
    m_thread->setObjectName(QStringLiteral("keyboard"));
    m_thread->start();
}

void X11KeyboardRouter::Core::stop()
{
    m_mailbox.post([](KeyRouting &routing) { routing.stop(); });
    m_thread->wait();
    m_mainThread.reset();
}

KeyRouting::Reports X11KeyboardRouter::Core::reports()
{
    QObject *mainThread = m_mainThread.get();
    const auto onMainThread = [mainThread](auto work) {
        QMetaObject::invokeMethod(mainThread, std::move(work), Qt::QueuedConnection);
    };
    return {
        .ask =
            [this, onMainThread](std::uint64_t question, const KeyEvent &event, PressKind kind) {
                onMainThread([this, question, event, kind] { m_taps.answer(question, event, kind); });
            },
        .tapDisabled =
            [onMainThread](std::shared_ptr<ChainedTap> tap) {
                onMainThread([tap = std::move(tap)] {
                    if (!tap->isClosed) {
                        tap->handler({.type = KeyEventType::tapDisabledByTimeout});
                    }
                });
            },
        .hotKeyPressed = [this, onMainThread](
                             const RegisteredHotKey &hotKey) { onMainThread([this, hotKey] { tellPressed(hotKey); }); },
        .connectionLost = [this] { m_isConnected = false; },
    };
}

void X11KeyboardRouter::Core::tellPressed(const RegisteredHotKey &hotKey) const
{
    if (hotKeys.contains(hotKey.token) && pressHandler) {
        // A copy, because the handler may be replaced while it runs. X11 has no use for the status.
        const HotKeyService::PressHandler handler = pressHandler;
        handler(hotKey.id);
    }
}

class X11KeyboardRouter::Taps : public KeyEventTapService {
public:
    explicit Taps(std::shared_ptr<Core> core) : m_core(std::move(core)) {}

    std::unique_ptr<KeyEventTap> createTap(TapScope scope, Handler handler) override;

private:
    class Tap;
    std::shared_ptr<Core> m_core;
};

class X11KeyboardRouter::Taps::Tap : public KeyEventTap {
public:
    Tap(std::shared_ptr<Core> core, std::shared_ptr<ChainedTap> tap) : m_core(std::move(core)), m_tap(std::move(tap)) {}

    ~Tap() override
    {
        m_core->taps().remove(m_tap);
        m_core->post(&KeyRouting::tapsChanged);
    }

    void enable() override
    {
        m_tap->isEnabled = true;
        m_core->post(&KeyRouting::tapsChanged);
    }

private:
    std::shared_ptr<Core> m_core;
    std::shared_ptr<ChainedTap> m_tap;
};

std::unique_ptr<KeyEventTap> X11KeyboardRouter::Taps::createTap(TapScope scope, Handler handler)
{
    if (!m_core->isConnected()) {
        return nullptr;
    }
    return std::make_unique<Tap>(m_core, m_core->taps().add(scope, std::move(handler)));
}

class X11KeyboardRouter::HotKeys : public HotKeyService {
public:
    explicit HotKeys(std::shared_ptr<Core> core) : m_core(std::move(core)) {}

    void installPressHandler(PressHandler handler) override { m_core->pressHandler = std::move(handler); }

    HotKeyRegistration registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, HotKeyID id) override;

private:
    class Ref;
    std::shared_ptr<Core> m_core;
    HotKeyToken m_lastToken = 0;
};

class X11KeyboardRouter::HotKeys::Ref : public HotKeyRef {
public:
    Ref(std::shared_ptr<Core> core, HotKeyToken token) : m_core(std::move(core)), m_token(token)
    {
        m_core->hotKeys.insert(m_token);
    }

    ~Ref() override
    {
        m_core->hotKeys.erase(m_token);
        m_core->post([token = m_token](KeyRouting &routing) { routing.removeHotKey(token); });
    }

private:
    std::shared_ptr<Core> m_core;
    HotKeyToken m_token;
};

HotKeyRegistration X11KeyboardRouter::HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                                              HotKeyID id)
{
    const RegisteredHotKey hotKey{
        .token = ++m_lastToken,
        .combination = {.keyCode = keyCode, .carbonModifiers = carbonModifiers},
        .id = id,
    };
    const auto result = std::make_shared<std::promise<HotKeyStatus>>();
    std::future<HotKeyStatus> answer = result->get_future();
    // One round trip to the server; the router's thread takes commands also while it waits for the main thread.
    if (!m_core->post([hotKey, result](KeyRouting &routing) { result->set_value(routing.addHotKey(hotKey)); })) {
        return {.status = hotKeyInvalidError, .ref = nullptr};
    }
    const HotKeyStatus status = answer.get();
    if (status != noHotKeyError) {
        return {.status = status, .ref = nullptr};
    }
    return {.status = noHotKeyError, .ref = std::make_unique<Ref>(m_core, hotKey.token)};
}

std::unique_ptr<X11KeyboardRouter> X11KeyboardRouter::start(const QByteArray &displayName)
{
    auto connection = KeyboardConnection::open(displayName);
    if (!connection) {
        return nullptr;
    }
    std::unique_ptr<X11KeyboardRouter> router(new X11KeyboardRouter);
    router->m_core->start(std::move(connection));
    return router;
}

X11KeyboardRouter::X11KeyboardRouter()
    : m_core(std::make_shared<Core>())
    , m_taps(std::make_unique<Taps>(m_core))
    , m_hotKeys(std::make_unique<HotKeys>(m_core))
{
}

X11KeyboardRouter::~X11KeyboardRouter()
{
    m_core->stop();
}

KeyEventTapService &X11KeyboardRouter::taps()
{
    return *m_taps;
}

HotKeyService &X11KeyboardRouter::hotKeys()
{
    return *m_hotKeys;
}

} // namespace lumenfold::x11

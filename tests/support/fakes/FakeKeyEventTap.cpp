#include "tests/support/fakes/FakeKeyEventTap.h"

#include <algorithm>
#include <utility>

namespace lumenfold::test {
namespace {

class FakeKeyEventTap : public KeyEventTap {
public:
    explicit FakeKeyEventTap(std::shared_ptr<FakeKeyEventTapService::Tap> record) : m_record(std::move(record)) {}
    ~FakeKeyEventTap() override
    {
        m_record->isClosed = true;
        m_record->isEnabled = false;
    }

    void enable() override
    {
        m_record->isEnabled = true;
        ++m_record->enableCalls;
    }

private:
    std::shared_ptr<FakeKeyEventTapService::Tap> m_record;
};

} // namespace

std::unique_ptr<KeyEventTap> FakeKeyEventTapService::createTap(TapScope scope, Handler handler)
{
    ++m_creationAttempts;
    if (!m_available) {
        return nullptr;
    }
    m_taps.push_back(std::make_shared<Tap>(Tap{.scope = scope, .handler = std::move(handler)}));
    return std::make_unique<FakeKeyEventTap>(m_taps.back());
}

std::size_t FakeKeyEventTapService::openTaps() const
{
    return static_cast<std::size_t>(std::ranges::count(m_taps, false, [](const auto &tap) { return tap->isClosed; }));
}

TapDisposition FakeKeyEventTapService::send(const KeyEvent &event)
{
    for (const auto &tap : newestFirst()) {
        if (tap->isEnabled && tap->handler(event) == TapDisposition::swallow) {
            return TapDisposition::swallow;
        }
    }
    return TapDisposition::passOn;
}

TapDisposition FakeKeyEventTapService::press(std::uint32_t keyCode, std::uint64_t flags)
{
    return send({.type = KeyEventType::keyDown, .keyCode = keyCode, .flags = flags});
}

void FakeKeyEventTapService::disableTaps(KeyEventType notice)
{
    for (const auto &tap : newestFirst()) {
        if (!tap->isClosed) {
            tap->isEnabled = false;
            tap->handler({.type = notice});
        }
    }
}

std::vector<std::shared_ptr<FakeKeyEventTapService::Tap>> FakeKeyEventTapService::newestFirst() const
{
    return {m_taps.rbegin(), m_taps.rend()};
}

} // namespace lumenfold::test

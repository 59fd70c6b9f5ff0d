#include "platform/keyboard/x11/TapChain.h"

#include <algorithm>
#include <utility>

namespace lumenfold::x11 {

ChainedTap::ChainedTap(TapScope tapScope, KeyEventTapService::Handler tapHandler)
    : scope(tapScope), handler(std::move(tapHandler))
{
}

TapChain::TapChain(std::function<void()> onAnswer) : m_onAnswer(std::move(onAnswer)) {}

std::shared_ptr<ChainedTap> TapChain::add(TapScope scope, KeyEventTapService::Handler handler)
{
    auto tap = std::make_shared<ChainedTap>(scope, std::move(handler));
    const std::lock_guard lock(m_mutex);
    m_taps.push_back(tap);
    return tap;
}

void TapChain::remove(const std::shared_ptr<ChainedTap> &tap)
{
    tap->isClosed = true;
    const std::lock_guard lock(m_mutex);
    std::erase(m_taps, tap);
}

void TapChain::answer(std::uint64_t question, const KeyEvent &event, PressKind kind)
{
    Taps newestFirst;
    {
        const std::lock_guard lock(m_mutex);
        newestFirst.assign(m_taps.rbegin(), m_taps.rend());
    }
    TapDisposition disposition = TapDisposition::passOn;
    for (const auto &tap : newestFirst) {
        if (!isAsked(*tap, kind)) {
            continue;
        }
        if (!beginAsking(question, tap)) {
            return;
        }
        disposition = tap->handler(event);
        if (disposition == TapDisposition::swallow) {
            break;
        }
    }
    {
        const std::lock_guard lock(m_mutex);
        if (m_openQuestion != question) {
            return;
        }
        m_asked.reset();
        m_answer = disposition;
    }
    m_onAnswer();
}

bool TapChain::wants(PressKind kind) const
{
    const std::lock_guard lock(m_mutex);
    return std::ranges::any_of(m_taps, [kind](const auto &tap) { return isAsked(*tap, kind); });
}

bool TapChain::wantsWholeKeyboard() const
{
    return wants(PressKind::ofOtherKey);
}

std::uint64_t TapChain::open(PressKind kind)
{
    const std::lock_guard lock(m_mutex);
    m_openQuestion = ++m_lastQuestion;
    m_openKind = kind;
    m_asked.reset();
    m_answer.reset();
    return m_openQuestion;
}

std::optional<TapDisposition> TapChain::takeAnswer()
{
    const std::lock_guard lock(m_mutex);
    if (m_answer) {
        m_openQuestion = 0;
    }
    return std::exchange(m_answer, std::nullopt);
}

std::shared_ptr<ChainedTap> TapChain::giveUp()
{
    const std::lock_guard lock(m_mutex);
    m_openQuestion = 0;
    m_answer.reset();
    std::shared_ptr<ChainedTap> slow = std::exchange(m_asked, nullptr);
    if (!slow) {
        const auto first =
            std::find_if(m_taps.rbegin(), m_taps.rend(), [this](const auto &tap) { return isAsked(*tap, m_openKind); });
        slow = first == m_taps.rend() ? nullptr : *first;
    }
    if (slow) {
        slow->isEnabled = false;
    }
    return slow;
}

bool TapChain::isAsked(const ChainedTap &tap, PressKind kind)
{
    return tap.isEnabled && !tap.isClosed && (tap.scope == TapScope::wholeKeyboard || kind == PressKind::ofHotKey);
}

bool TapChain::beginAsking(std::uint64_t question, const std::shared_ptr<ChainedTap> &tap)
{
    const std::lock_guard lock(m_mutex);
    if (m_openQuestion != question) {
        return false;
    }
    m_asked = tap;
    return true;
}

} // namespace lumenfold::x11

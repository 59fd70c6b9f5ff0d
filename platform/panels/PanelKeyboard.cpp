#include "platform/panels/PanelKeyboard.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

namespace lumenfold {

PanelKeyboard::PanelKeyboard(KeyEventTapService &taps) : m_taps(taps) {}

PanelKeyboard::~PanelKeyboard() = default;

PanelKeyboard::Grip PanelKeyboard::give(const void *owner, Handler handler)
{
    if (!m_tap) {
        m_tap = m_taps.createTap(TapScope::wholeKeyboard, [this](const KeyEvent &event) { return keyHappened(event); });
        if (!m_tap) {
            return Grip::refused;
        }
        m_tap->enable();
    }
    m_owner = owner;
    m_handler = std::make_shared<const Handler>(std::move(handler));
    return Grip::held;
}

void PanelKeyboard::takeFrom(const void *owner)
{
    if (owner == m_owner && m_owner != nullptr) {
        m_owner = nullptr;
        m_handler.reset();
        closeTap();
    }
}

TapDisposition PanelKeyboard::keyHappened(const KeyEvent &event)
{
    if (event.type == KeyEventType::tapDisabledByTimeout || event.type == KeyEventType::tapDisabledByUserInput) {
        if (m_tap) {
            m_tap->enable();
        }
        return TapDisposition::passOn;
    }
    if (event.type == KeyEventType::keyDown && m_handler) {
        const bool wasHandling = std::exchange(m_handling, true);
        const auto handler = m_handler;
        (*handler)(event);
        m_handling = wasHandling;
    }
    return TapDisposition::swallow;
}

void PanelKeyboard::closeTap()
{
    if (m_handling) {
        // The tap is in the middle of calling us. Its handler does nothing any more; it goes in the next turn.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [tap = std::shared_ptr<KeyEventTap>(std::move(m_tap))] {},
            Qt::QueuedConnection);
        return;
    }
    m_tap.reset();
}

} // namespace lumenfold

#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace lumenfold {

/// Carries the news of an encoding to the thread of whoever asked. What it calls there lives and dies on that thread,
/// and the encoding thread never looks at an object that may be going away.
class EncodingListener {
public:
    using Done = std::function<void(std::optional<QByteArray>)>;

    /// `done` is called on the thread of `context`, and not at all once `context` is gone.
    EncodingListener(QObject *context, Done done);

    /// To be called once, on any thread; `done` is called later, never inside this call.
    void tell(std::optional<QByteArray> png) const;

private:
    class Relay;
    std::shared_ptr<Relay> m_relay;
};

} // namespace lumenfold

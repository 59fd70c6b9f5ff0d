#include "platform/image/EncodingListener.h"

#include <QPointer>
#include <QThread>

#include <utility>

namespace lumenfold {

/// An object of the listening thread that belongs to nobody there, so that it is surely alive when it is posted to.
class EncodingListener::Relay : public QObject {
public:
    Relay(QObject *context, Done done) : m_context(context), m_done(std::move(done))
    {
        moveToThread(context->thread());
    }

    void call(std::optional<QByteArray> png)
    {
        const Done done = std::exchange(m_done, {});
        if (m_context) {
            done(std::move(png));
        }
    }

private:
    QPointer<QObject> m_context;
    Done m_done;
};

namespace {

/// News that is never delivered is thrown away at the end of the application, which then holds the lock of its event
/// queue: nothing may be posted there, not even a deletion for later.
void deleteOnItsThread(QObject *relay)
{
    if (relay->thread() == QThread::currentThread()) {
        delete relay;
    } else {
        relay->deleteLater();
    }
}

} // namespace

EncodingListener::EncodingListener(QObject *context, Done done)
    : m_relay(new Relay(context, std::move(done)), &deleteOnItsThread)
{
}

void EncodingListener::tell(std::optional<QByteArray> png) const
{
    QMetaObject::invokeMethod(
        m_relay.get(), [relay = m_relay, png = std::move(png)] { relay->call(png); }, Qt::QueuedConnection);
}

} // namespace lumenfold

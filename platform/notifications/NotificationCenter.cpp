#include "platform/notifications/NotificationCenter.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace lumenfold {

/// Shared by the centre and its observations, so that either may go first. Guarded by the mutex, which is never held
/// while a handler runs: handlers observe, post and go away as they like.
struct NotificationCenter::Registry {
    struct Observer {
        QString name;
        Handler handler;
        /// Cleared when the observation goes away, so that a delivery under way skips it.
        bool isObserving = true;
    };

    std::mutex mutex;
    std::vector<std::shared_ptr<Observer>> observers;

    [[nodiscard]] std::vector<std::shared_ptr<Observer>> observersOf(const QString &name)
    {
        const std::lock_guard lock(mutex);
        std::vector<std::shared_ptr<Observer>> found;
        std::ranges::copy_if(observers, std::back_inserter(found),
                             [&](const std::shared_ptr<Observer> &observer) { return observer->name == name; });
        return found;
    }

    [[nodiscard]] bool isObserving(const Observer &observer)
    {
        const std::lock_guard lock(mutex);
        return observer.isObserving;
    }

    void remove(const std::shared_ptr<Observer> &observer)
    {
        const std::lock_guard lock(mutex);
        observer->isObserving = false;
        std::erase(observers, observer);
    }

    class Membership : public Observation {
    public:
        Membership(std::shared_ptr<Registry> registry, std::shared_ptr<Observer> observer)
            : m_registry(std::move(registry)), m_observer(std::move(observer))
        {
        }

        ~Membership() override { m_registry->remove(m_observer); }

    private:
        std::shared_ptr<Registry> m_registry;
        std::shared_ptr<Observer> m_observer;
    };
};

NotificationCenter::NotificationCenter() : m_registry(std::make_shared<Registry>()) {}

NotificationCenter::~NotificationCenter() = default;

std::unique_ptr<NotificationCenter::Observation> NotificationCenter::observe(const QString &name, Handler handler)
{
    auto observer = std::make_shared<Registry::Observer>(Registry::Observer{name, std::move(handler)});
    {
        const std::lock_guard lock(m_registry->mutex);
        m_registry->observers.push_back(observer);
    }
    return std::make_unique<Registry::Membership>(m_registry, std::move(observer));
}

void NotificationCenter::post(const QString &name, NotificationSender sender, const QVariantMap &userInfo)
{
    // A handler may let go of the centre itself, so nothing of it is touched once the delivery has begun.
    const std::shared_ptr<Registry> registry = m_registry;
    const Notification notification{name, sender, userInfo};
    for (const std::shared_ptr<Registry::Observer> &observer : registry->observersOf(notification.name)) {
        if (registry->isObserving(*observer)) {
            observer->handler(notification);
        }
    }
}

} // namespace lumenfold

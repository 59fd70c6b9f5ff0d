#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

namespace lumenfold {

/// Identifies who posted; compared, never followed.
using NotificationSender = const void *;

struct Notification {
    QString name;
    NotificationSender sender = nullptr;
    QVariantMap userInfo;
};

/// Tells observers by name. Delivery is synchronous, on the posting thread, in the order in which they registered.
class NotificationCenter {
public:
    using Handler = std::function<void(const Notification &)>;

    /// Observes for as long as it lives.
    class Observation {
    public:
        Observation() = default;
        Observation(const Observation &) = delete;
        Observation &operator=(const Observation &) = delete;
        virtual ~Observation() = default;
    };

    NotificationCenter();
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;
    ~NotificationCenter();

    /// Observes notifications of that name from any sender. An observation may outlive the centre. An observer that
    /// goes away while a notification is being delivered is not called any more.
    [[nodiscard]] std::unique_ptr<Observation> observe(const QString &name, Handler handler);

    void post(const QString &name, NotificationSender sender = nullptr, const QVariantMap &userInfo = {});

private:
    struct Registry;
    std::shared_ptr<Registry> m_registry;
};

} // namespace lumenfold

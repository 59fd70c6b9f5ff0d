#pragma once

#include "platform/filepanels/OpenPanel.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <optional>

class QDBusPendingCallWatcher;

namespace lumenfold {

/// One request to the desktop's portal to have a folder chosen.
class PortalFolderRequest : public QObject {
    Q_OBJECT

public:
    enum class Outcome {
        /// The user has chosen, or has closed the panel.
        answered,
        /// Nobody took the request, and no panel is up.
        unavailable,
    };

    explicit PortalFolderRequest(const QDBusConnection &bus);
    ~PortalFolderRequest() override;

    /// Returns at once; `ended` follows in a later turn of the event loop.
    void send(const OpenPanel::Request &request, std::chrono::milliseconds patience);

    [[nodiscard]] Outcome outcome() const { return m_outcome; }
    /// The folder, if the user has chosen one.
    [[nodiscard]] const std::optional<QString> &directory() const { return m_directory; }

Q_SIGNALS:
    void ended();

private Q_SLOTS:
    void respond(uint response, const QVariantMap &results);

private:
    void listenTo(const QString &requestPath);
    void taken(QDBusPendingCallWatcher &answer);
    void end(Outcome outcome);

    QDBusConnection m_bus;
    /// The object on the bus that stands for the request.
    QString m_path;
    Outcome m_outcome = Outcome::unavailable;
    std::optional<QString> m_directory;
    bool m_hasEnded = false;
};

} // namespace lumenfold

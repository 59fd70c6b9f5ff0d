#pragma once

#include "platform/updates/UpdateUserDriver.h"

#include <QCoroTask>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace lumenfold {

class MainQueue;
class ScheduledWork;
class UpdateFeed;
class UserDefaults;
class Workspace;

/// Looks for updates in a signed feed: by itself about once a day, which shows nothing and only tells the delegate, and
/// when the user asks, who is shown what goes on. Between two looks it is one timer that waits. Without a key to tell
/// genuine feeds by, nobody is ever asked.
class AppcastUpdaterController : public QObject, public StandardUpdaterController {
    Q_OBJECT

public:
    /// Seconds since 1970 of the last look, whoever asked for it.
    static const QString lastCheckKey;
    /// The version that the user does not want to hear of.
    static const QString skippedVersionKey;

    struct Collaborators {
        UpdateFeed &feed;
        UserDefaults &defaults;
        MainQueue &queue;
        Workspace &workspace;
        UpdateUserDriver &user;
        UpdaterDelegate &delegate;
        /// The clock on the wall, and a number from 0 to less than 1.
        std::function<std::chrono::sys_seconds()> now = currentTime;
        std::function<double()> chance = randomShare;
    };

    /// Everything must outlive this object. The first look comes minutes later.
    AppcastUpdaterController(Collaborators collaborators, UpdateTerms terms);
    ~AppcastUpdaterController() override;

    /// A version that was skipped is shown again: whoever asks wants to know.
    void checkForUpdates() override;

private:
    [[nodiscard]] static std::chrono::sys_seconds currentTime();
    [[nodiscard]] static double randomShare();

    void scheduleNext();
    QCoro::Task<> check();
    void checked(const tl::expected<std::optional<AvailableUpdate>, UpdateCheckError> &outcome);
    void found(const AvailableUpdate &update);
    void chosen(const AvailableUpdate &update, UpdateChoice choice);
    [[nodiscard]] bool isSkipped(const AvailableUpdate &update) const;

    const Collaborators m_with;
    const UpdateTerms m_terms;
    std::shared_ptr<ScheduledWork> m_next;
    bool m_isChecking = false;
    /// Whether somebody looks at the progress of the check under way.
    bool m_isUserWaiting = false;
};

} // namespace lumenfold

#include "platform/updates/AppcastUpdaterController.h"

#include "platform/defaults/UserDefaults.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/updates/Appcast.h"
#include "platform/updates/SoftwareVersion.h"
#include "platform/updates/UpdateFeed.h"
#include "platform/updates/UpdateSchedule.h"
#include "platform/workspace/Workspace.h"

#include <QDebug>
#include <QPointer>
#include <QRandomGenerator>

#include <utility>

namespace lumenfold {
namespace {

QString reason(UpdateCheckError error)
{
    switch (error) {
    case UpdateCheckError::unreachable:
        return QStringLiteral("the feed cannot be had");
    case UpdateCheckError::untrusted:
        return QStringLiteral("the feed cannot be trusted");
    case UpdateCheckError::unreadable:
        return QStringLiteral("the feed cannot be read");
    case UpdateCheckError::withoutKey:
        break;
    }
    return QStringLiteral("the program was built without a key");
}

} // namespace

const QString AppcastUpdaterController::lastCheckKey = QStringLiteral("LumenFold.lastUpdateCheck");
const QString AppcastUpdaterController::skippedVersionKey = QStringLiteral("LumenFold.skippedUpdateVersion");

AppcastUpdaterController::AppcastUpdaterController(Collaborators collaborators, UpdateTerms terms)
    : m_with(std::move(collaborators)), m_terms(std::move(terms))
{
    scheduleNext();
}

AppcastUpdaterController::~AppcastUpdaterController()
{
    if (m_next) {
        m_next->cancel();
    }
}

void AppcastUpdaterController::checkForUpdates()
{
    if (m_with.user.bringUpdateForward()) {
        return;
    }
    m_isUserWaiting = true;
    m_with.user.showChecking([self = QPointer(this)] {
        if (self) {
            self->m_isUserWaiting = false;
        }
    });
    if (!m_isChecking) {
        check();
    }
}

void AppcastUpdaterController::scheduleNext()
{
    if (m_next) {
        m_next->cancel();
        m_next.reset();
    }
    if (m_terms.publicKey.isEmpty()) {
        return;
    }
    std::optional<std::chrono::sys_seconds> last;
    if (const qint64 seconds = m_with.defaults.integer(lastCheckKey); seconds > 0) {
        last = std::chrono::sys_seconds(std::chrono::seconds(seconds));
    }
    m_next = m_with.queue.after(updateSchedule::delayUntilNext(m_with.now(), last, m_with.chance()), [this] {
        if (m_isChecking) {
            scheduleNext();
        } else {
            check();
        }
    });
}

QCoro::Task<> AppcastUpdaterController::check()
{
    if (m_terms.publicKey.isEmpty()) {
        checked(tl::unexpected(UpdateCheckError::withoutKey));
        co_return;
    }
    m_isChecking = true;
    // Before the answer: a server in trouble is not asked more often than one that is well.
    m_with.defaults.setInteger(lastCheckKey, m_with.now().time_since_epoch().count());
    scheduleNext();
    const QPointer self(this);
    const tl::expected<QByteArray, UpdateCheckError> feed = co_await m_with.feed.fetch(maximumAppcastBytes, this);
    if (!self) {
        co_return;
    }
    m_isChecking = false;
    if (feed) {
        checked(updateIn(*feed, m_terms));
    } else {
        checked(tl::unexpected(feed.error()));
    }
}

void AppcastUpdaterController::checked(const tl::expected<std::optional<AvailableUpdate>, UpdateCheckError> &outcome)
{
    if (!outcome) {
        qInfo().noquote() << "LumenFold could not check for updates:" << reason(outcome.error());
        if (std::exchange(m_isUserWaiting, false)) {
            m_with.user.showFailure(outcome.error());
        }
    } else if (*outcome) {
        found(**outcome);
    } else {
        m_with.delegate.updaterDidNotFindUpdate();
        if (std::exchange(m_isUserWaiting, false)) {
            m_with.user.showUpToDate();
        }
    }
}

void AppcastUpdaterController::found(const AvailableUpdate &update)
{
    const bool isUserWaiting = std::exchange(m_isUserWaiting, false);
    if (!isUserWaiting && isSkipped(update)) {
        m_with.delegate.updaterDidNotFindUpdate();
        return;
    }
    m_with.delegate.didFindValidUpdate(update);
    if (isUserWaiting) {
        if (m_with.defaults.contains(skippedVersionKey)) {
            m_with.defaults.remove(skippedVersionKey);
        }
        m_with.user.showUpdate(update, [self = QPointer(this), update](UpdateChoice choice) {
            if (self) {
                self->chosen(update, choice);
            }
        });
    }
}

void AppcastUpdaterController::chosen(const AvailableUpdate &update, UpdateChoice choice)
{
    switch (choice) {
    case UpdateChoice::openPage:
        m_with.workspace.open(update.page);
        break;
    case UpdateChoice::remindLater:
        break;
    case UpdateChoice::skipVersion:
        m_with.defaults.setString(skippedVersionKey, update.version);
        m_with.delegate.updaterDidNotFindUpdate();
        break;
    }
}

bool AppcastUpdaterController::isSkipped(const AvailableUpdate &update) const
{
    const auto skipped = SoftwareVersion::parse(m_with.defaults.string(skippedVersionKey).value_or(QString()));
    const auto offered = SoftwareVersion::parse(update.version);
    return skipped && offered && *offered <= *skipped;
}

std::chrono::sys_seconds AppcastUpdaterController::currentTime()
{
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

double AppcastUpdaterController::randomShare()
{
    return QRandomGenerator::global()->generateDouble();
}

} // namespace lumenfold

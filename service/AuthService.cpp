#include "service/AuthService.h"

#include "platform/defaults/UserDefaults.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/KeychainHelper.h"

#include <QPointer>

namespace lumenfold {
namespace {

AuthService *sharedService = nullptr;

} // namespace

const QString AuthService::keychainKey = QStringLiteral("org.lumenfold.LumenFold.apiKey");
const QString AuthService::emailDefaultsKey = QStringLiteral("LumenFold.userEmail");
const QString AuthService::tierDefaultsKey = QStringLiteral("LumenFold.userTier");
const QString AuthService::authStateChangedNotification = QStringLiteral("LumenFold.authStateChanged");

AuthService::AuthService(const Collaborators &collaborators) : m_with(collaborators)
{
    connect(&m_with.keychain.store(), &SecretStore::changed, this, &AuthService::keychainChanged);
}

AuthService::~AuthService() = default;

AuthService &AuthService::shared()
{
    Q_ASSERT_X(sharedService, "AuthService::shared", "called before the composition root made it");
    return *sharedService;
}

void AuthService::setShared(AuthService *service)
{
    sharedService = service;
}

std::optional<QString> AuthService::apiKey() const
{
    return m_with.keychain.read(keychainKey);
}

bool AuthService::isSignedIn() const
{
    return m_with.keychain.presence(keychainKey) == SecretPresence::locked || apiKey().has_value();
}

bool AuthService::isKnownToBeSignedOut() const
{
    return m_with.keychain.presence(keychainKey) != SecretPresence::unknown && !isSignedIn();
}

bool AuthService::hasKeyring() const
{
    return m_with.keychain.store().isAvailable();
}

std::optional<QString> AuthService::userEmail() const
{
    return m_with.defaults.string(emailDefaultsKey);
}

std::optional<QString> AuthService::userTier() const
{
    return m_with.defaults.string(tierDefaultsKey);
}

QCoro::Task<> AuthService::firstAnswer()
{
    return m_with.keychain.store().firstAnswer();
}

QCoro::Task<std::optional<QString>> AuthService::requestApiKey()
{
    const QPointer self(this);
    co_await firstAnswer();
    if (!self) {
        co_return std::nullopt;
    }
    const SecretPresence presence = m_with.keychain.presence(keychainKey);
    if (presence == SecretPresence::locked || presence == SecretPresence::unknown) {
        co_await m_with.keychain.unlock(keychainKey);
    }
    if (!self) {
        co_return std::nullopt;
    }
    co_return apiKey();
}

void AuthService::signOut()
{
    m_with.keychain.remove(keychainKey);
    m_with.defaults.remove(emailDefaultsKey);
    m_with.defaults.remove(tierDefaultsKey);
    m_wasSignedIn = false;
    m_with.queue.post([self = QPointer(this)] {
        if (self) {
            self->postStateChanged();
        }
    });
}

void AuthService::keychainChanged()
{
    if (m_signIns == 0 && isSignedIn() != m_wasSignedIn) {
        postStateChanged();
    }
}

void AuthService::postStateChanged()
{
    m_wasSignedIn = isSignedIn();
    m_with.notifications.post(authStateChangedNotification);
}

} // namespace lumenfold

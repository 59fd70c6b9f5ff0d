#include "service/AuthService.h"

#include "app/configuration/AppConfig.h"
#include "platform/defaults/UserDefaults.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "service/wire/Wire.h"

#include <QPointer>

namespace lumenfold {
namespace {

AuthService *sharedService = nullptr;

/// Whose key it was, if the service knows. Throws AuthError.
LumenfoldUser userIn(const HttpAnswer &answer)
{
    constexpr int unauthorized = 401;
    constexpr int forbidden = 403;
    if (answer.status == unauthorized || answer.status == forbidden) {
        throw AuthError::invalidKey();
    }
    if (answer.status < 200 || answer.status > 299) {
        throw AuthError::network(QStringLiteral("Server returned %1.").arg(answer.status));
    }
    std::optional<LumenfoldUser> user = readUser(answer.body);
    if (!user) {
        throw AuthError::invalidKey();
    }
    return *std::move(user);
}

/// What the user is told; what exactly went wrong is for nobody.
AuthError errorFor(const TransportError &error)
{
    // The header has been looked at, so it is the address: of a file, for example, whatever stands there.
    if (error.kind() == TransportError::Kind::refused) {
        return AuthError::network(QStringLiteral("Unexpected server response."));
    }
    return AuthError::network(QStringLiteral("Couldn't reach LumenFold. Check your connection and try again."));
}

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

QCoro::Task<LumenfoldUser> AuthService::fetchUser(QString apiKey)
{
    const QByteArray key = apiKey.trimmed().toUtf8();
    // A key that cannot be sent is none that the service has ever given anybody.
    if (key.isEmpty() || !isHeaderValue(key)) {
        throw AuthError::invalidKey();
    }
    HttpRequest request;
    request.address = m_with.config.userEndpoint();
    request.timeOut = m_with.patience;
    request.headers = {{"Authorization", "ApiKey " + key}};
    HttpAnswer answer;
    try {
        answer = co_await m_with.http.send(request, this);
    } catch (const TransportError &error) {
        throw errorFor(error);
    }
    co_return userIn(answer);
}

QCoro::Task<LumenfoldUser> AuthService::signIn(QString apiKey)
{
    const QPointer self(this);
    LumenfoldUser user = co_await fetchUser(apiKey);
    if (!self) {
        co_return user;
    }
    ++m_writes;
    co_await m_with.keychain.write(keychainKey, apiKey);
    if (!self) {
        co_return user;
    }
    --m_writes;
    m_with.defaults.setString(emailDefaultsKey, user.email);
    if (user.tier) {
        m_with.defaults.setString(tierDefaultsKey, *user.tier);
    } else {
        m_with.defaults.remove(tierDefaultsKey);
    }
    postStateChanged();
    co_return user;
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
    if (m_writes == 0 && isSignedIn() != m_wasSignedIn) {
        postStateChanged();
    }
    Q_EMIT keyringChanged();
}

void AuthService::postStateChanged()
{
    m_wasSignedIn = isSignedIn();
    m_with.notifications.post(authStateChangedNotification);
}

} // namespace lumenfold

#include "tests/components/account/AccountFixture.h"

#include "platform/secrets/KeyringModule.h"
#include "tests/support/desktop/Wait.h"

#include <QCoroTask>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

QCoro::Task<> note(AuthService &auth, QString key, std::optional<std::variant<LumenfoldUser, QString>> &outcome)
{
    try {
        LumenfoldUser user = co_await auth.signIn(key);
        outcome = user;
    } catch (const AuthError &error) {
        outcome = error.description();
    }
}

} // namespace

AccountSurroundings::AccountSurroundings() : store(KeychainHelper::service, makeKeyringOfModule) {}

AccountFixture::AccountFixture() : AccountParts(store, 2s)
{
    useService(service.baseURL());
    observation =
        notifications.observe(AuthService::authStateChangedNotification, [this](const Notification &) { ++posts; });
    useKeyring({});
}

void AccountFixture::useKeyring(const KeyringDaemonOptions &options)
{
    daemon.reset();
    daemon = std::make_unique<KeyringDaemon>(QString::fromLatin1(qgetenv("DBUS_SESSION_BUS_ADDRESS")), options);
    const SecretPresence wanted = options.apiKey ? SecretPresence::present : SecretPresence::absent;
    waitUntil("the keyring to be known",
              [&] { return auth.hasKeyring() && keychain.presence(AuthService::keychainKey) == wanted; });
    // What became known is told a moment later.
    QCoreApplication::processEvents();
    posts = 0;
}

AccountFixture::Outcome AccountFixture::signIn(const QString &key)
{
    std::optional<Outcome> outcome;
    note(auth, key, outcome);
    waitUntil(
        "the end of the sign-in", [&] { return outcome.has_value(); }, 20s);
    return *outcome;
}

QString AccountFixture::invalidKey()
{
    return QStringLiteral("That API key isn't valid. Double-check it and try again.");
}

QString AccountFixture::unreachable()
{
    return QStringLiteral("Couldn't reach LumenFold. Check your connection and try again.");
}

} // namespace lumenfold::test

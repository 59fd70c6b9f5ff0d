#include "tests/components/secrets/SecretsFixture.h"

#include "platform/secrets/KeyringModule.h"
#include "tests/support/desktop/Wait.h"

#include <QCoreApplication>
#include <QCoroTask>

namespace lumenfold::test {

const SessionBus *SecretsFixture::bus = nullptr;

void SecretsFixture::setBus(const SessionBus &sessionBus)
{
    bus = &sessionBus;
}

void SecretsFixture::makeDaemon(const KeyringDaemonOptions &options)
{
    daemon = std::make_unique<KeyringDaemon>(bus->address(), options);
}

void SecretsFixture::makeStore()
{
    store = std::make_unique<MirroredSecretStore>(key.service, makeKeyringOfModule);
    QObject::connect(store.get(), &SecretStore::changed, store.get(), [this] { ++changes; });
}

void SecretsFixture::makeAnsweredStore()
{
    makeStore();
    QCoro::waitFor(store->firstAnswer());
    // That something is known now is told a moment later.
    QCoreApplication::processEvents();
    changes = 0;
}

bool SecretsFixture::untilPresence(SecretPresence presence)
{
    return waitFor([&] { return store->presence(key) == presence; });
}

int SecretsFixture::statusOf(QCoro::Task<int> operation)
{
    return QCoro::waitFor(std::move(operation));
}

} // namespace lumenfold::test

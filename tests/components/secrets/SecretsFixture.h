#pragma once

#include "platform/secrets/MirroredSecretStore.h"
#include "tests/support/desktop/KeyringDaemon.h"
#include "tests/support/desktop/Session.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace lumenfold::test {

/// The program's store on a real keyring. While a test waits, the event loop turns.
class SecretsFixture : public ::testing::Test {
public:
    static void setBus(const SessionBus &bus);

protected:
    void makeDaemon(const KeyringDaemonOptions &options = {});
    void makeStore();
    /// The store has its first answer when this returns.
    void makeAnsweredStore();
    [[nodiscard]] bool untilPresence(SecretPresence presence);
    /// Turns the event loop until the operation is over.
    [[nodiscard]] static int statusOf(QCoro::Task<int> operation);

    static const SessionBus *bus;

    const SecretKey key{.service = QStringLiteral("org.lumenfold.LumenFold"),
                        .account = QStringLiteral("org.lumenfold.LumenFold.apiKey")};
    std::unique_ptr<KeyringDaemon> daemon;
    std::unique_ptr<MirroredSecretStore> store;
    int changes = 0;
};

} // namespace lumenfold::test

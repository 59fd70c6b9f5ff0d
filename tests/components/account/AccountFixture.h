#pragma once

#include "platform/secrets/MirroredSecretStore.h"
#include "tests/support/desktop/KeyringDaemon.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/service/ServiceDouble.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <variant>

namespace lumenfold::test {

/// What the account speaks to, and the program's own way to the keyring. It outlives the account.
struct AccountSurroundings {
    AccountSurroundings();

    ServiceDouble service;
    std::unique_ptr<KeyringDaemon> daemon;
    MirroredSecretStore store;
};

/// The account of the program on the double of the service, over HTTP, and on a keyring of its own.
class AccountFixture : public ::testing::Test, protected AccountSurroundings, protected AccountParts {
protected:
    using Endpoint = ServiceDouble::Endpoint;
    using Way = Behaviour::Way;
    /// The user, or the text that the user is shown.
    using Outcome = std::variant<LumenfoldUser, QString>;

    AccountFixture();

    /// A keyring in place of the present one, if any, known to the account when this returns.
    void useKeyring(const KeyringDaemonOptions &options);
    [[nodiscard]] Outcome signIn(const QString &key);

    [[nodiscard]] static QString invalidKey();
    [[nodiscard]] static QString unreachable();

    int posts = 0;
    std::unique_ptr<NotificationCenter::Observation> observation;
};

} // namespace lumenfold::test

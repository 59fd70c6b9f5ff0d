#pragma once

#include "app/configuration/AppConfig.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/secrets/MirroredSecretStore.h"
#include "service/AuthService.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "tests/support/desktop/KeyringDaemon.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/service/ServiceDouble.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <variant>

namespace lumenfold::test {

/// The account of the program on the double of the service, over HTTP, and on a keyring of its own.
class AccountFixture : public ::testing::Test {
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

    ServiceDouble service;
    std::unique_ptr<KeyringDaemon> daemon;
    MirroredSecretStore store;
    KeychainHelper keychain{store};
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    FakeMainQueue queue;
    FakeScreens screens;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    HttpClient http;
    AuthService auth;
    int posts = 0;
    std::unique_ptr<NotificationCenter::Observation> observation;
};

} // namespace lumenfold::test

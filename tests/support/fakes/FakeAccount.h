#pragma once

#include "app/configuration/AppConfig.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/AuthService.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeSecretStore.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QUrl>

#include <chrono>

namespace lumenfold::test {

/// The real account with everything that decides what it says: settings and time are the test's, and so is the keyring,
/// which must outlive this. A base of fixtures, or a part of them.
struct AccountParts {
    explicit AccountParts(SecretStore &secrets, std::chrono::milliseconds patience = std::chrono::seconds(60))
        : keychain(secrets)
        , auth({.http = http,
                .config = config,
                .keychain = keychain,
                .defaults = defaults,
                .notifications = notifications,
                .queue = queue,
                .patience = patience})
    {
    }

    /// The service is at this address.
    void useService(const QUrl &base) { defaults.setRaw(AppConfig::apiBaseOverrideKey, base.toString()); }

    KeychainHelper keychain;
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    FakeMainQueue queue;
    FakeScreens screens;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    HttpClient http;
    AuthService auth;
};

/// A keyring in memory, in which others store the API key.
struct FakeKeyring {
    [[nodiscard]] static SecretKey apiKeyItem()
    {
        return {.service = KeychainHelper::service, .account = AuthService::keychainKey};
    }
    void putKey(const QByteArray &key) { keyring.putFromOutside(apiKeyItem(), key); }
    void removeKey() { keyring.removeFromOutside(apiKeyItem()); }

    FakeSecretStore keyring;
};

struct FakeAccount : FakeKeyring, AccountParts {
    FakeAccount() : AccountParts(keyring) {}
};

} // namespace lumenfold::test

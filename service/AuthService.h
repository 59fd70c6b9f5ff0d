#pragma once

#include "service/AuthError.h"
#include "service/LumenfoldUser.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

namespace lumenfold {

class AppConfig;
class HttpClient;
class KeychainHelper;
class MainQueue;
class NotificationCenter;
class UserDefaults;

/// Who is connected to the online service. Being signed in means that an API key is stored, and nothing more; neither
/// is cached here. Main thread, except where it says otherwise.
class AuthService : public QObject {
    Q_OBJECT

public:
    /// The account under which the keyring holds the API key.
    static const QString keychainKey;
    static const QString emailDefaultsKey;
    static const QString tierDefaultsKey;
    /// Posted without a sender and user info, on the main thread, after every sign-in and sign-out, and when the key
    /// comes or goes in other ways: with the keyring's first answer, or by the hand of another program.
    static const QString authStateChangedNotification;

    /// Everything must outlive the service.
    struct Collaborators {
        HttpClient &http;
        const AppConfig &config;
        KeychainHelper &keychain;
        UserDefaults &defaults;
        NotificationCenter &notifications;
        MainQueue &queue;
        /// How long the service may take to answer.
        std::chrono::milliseconds patience = std::chrono::seconds{60};
    };

    explicit AuthService(const Collaborators &collaborators);
    ~AuthService() override;

    /// The one of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static AuthService &shared();
    /// Not owned; null when it goes away.
    static void setShared(AuthService *service);

    /// The stored key as it is known now, at once. Nothing while the keyring is locked or has not answered yet: whoever
    /// needs the key for what the user just asked for takes `requestApiKey`. From any thread.
    [[nodiscard]] std::optional<QString> apiKey() const;
    /// True also while the key is there but locked. From any thread.
    [[nodiscard]] bool isSignedIn() const;
    /// False while the keyring has not answered, does not answer or hides what it holds. From any thread.
    [[nodiscard]] bool isKnownToBeSignedOut() const;
    /// Whether there is a place where a key could be kept, as far as is known.
    [[nodiscard]] bool hasKeyring() const;

    [[nodiscard]] std::optional<QString> userEmail() const;
    [[nodiscard]] std::optional<QString> userTier() const;

    /// Ends when the keyring has given its first answer, or was waited for long enough.
    [[nodiscard]] QCoro::Task<> firstAnswer();
    /// The stored key for something that the user has asked for: waits for a keyring that has not answered yet, and has
    /// a locked one ask the user to unlock it. Nothing if there is no key, or none to be had.
    [[nodiscard]] QCoro::Task<std::optional<QString>> requestApiKey();

    /// Asks the service whose key this is and stores it, exactly as it is. Throws AuthError and leaves everything as it
    /// was if it is nobody's. A keyring that does not take the key is in the log only. A locked one asks the user, and
    /// signing in lasts until the answer.
    [[nodiscard]] QCoro::Task<LumenfoldUser> signIn(QString apiKey);
    /// Forgets the key and the account at once; the notification follows in a later turn of the event loop.
    void signOut();

Q_SIGNALS:
    /// `hasKeyring`, or what is known of the key, may be another one.
    void keyringChanged();

private:
    /// Whose key it is, white space around it aside. Throws AuthError.
    [[nodiscard]] QCoro::Task<LumenfoldUser> fetchUser(QString apiKey);
    void keychainChanged();
    void postStateChanged();

    const Collaborators m_with;
    /// What observers were told last.
    bool m_wasSignedIn = false;
    /// Keys that are being stored; observers are told when that is done.
    int m_writes = 0;
};

} // namespace lumenfold

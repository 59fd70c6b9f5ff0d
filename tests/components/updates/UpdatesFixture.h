#pragma once

#include "app/updates/HttpUpdateFeed.h"
#include "app/updates/UpdateWindowController.h"
#include "platform/updates/AppcastUpdaterController.h"
#include "service/http/HttpClient.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeUpdater.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/service/Certificates.h"
#include "tests/support/service/ServiceDouble.h"
#include "tests/support/updates/SignedFeeds.h"

#include <QDialog>
#include <QPushButton>

#include <gmock/gmock.h>

namespace lumenfold::test {

/// The whole updater, with its window, on a server over HTTPS.
class UpdatesTest : public ::testing::Test {
protected:
    using Way = Behaviour::Way;

    static void SetUpTestSuite() { s_authority = new CertificateAuthority; }
    static void TearDownTestSuite() { delete std::exchange(s_authority, nullptr); }

    /// From now on the server has this feed.
    void serve(const QByteArray &bytes) { behave(answering(200, bytes)); }
    void serveSigned(const QList<FeedItem> &items) { serve(signer.sign(feedOf(items))); }
    void behave(const Behaviour &behaviour) { server.behave(ServiceDouble::Endpoint::page, behaviour); }
    [[nodiscard]] int requests() const { return server.begun(ServiceDouble::Endpoint::page); }

    /// Asks for updates, and waits until the window shows something else than that it asks.
    void check();

    /// What can be seen, if anything: of the one window.
    [[nodiscard]] static QDialog *window();
    [[nodiscard]] static QString heading();
    [[nodiscard]] static QString text();
    [[nodiscard]] static QPushButton *button(const QString &text);
    static void press(int key);

    static inline CertificateAuthority *s_authority = nullptr;

    ServiceDouble server{ServiceDouble::Options{.identity = s_authority->identityFor(QStringLiteral("127.0.0.1"))}};
    const FeedSigner signer;
    FakeAppearance appearance;
    FakeWorkspace workspace;
    FakeUserDefaults defaults;
    FakeMainQueue queue;
    FakeUpdaterDelegate delegate;
    HttpClient http{HttpClient::Options{.additionalAuthorities = s_authority->certificate()}};
    HttpUpdateFeed feed{http, server.url(QStringLiteral("/appcast.xml"))};
    UpdateWindowController user{
        {.appearance = appearance, .workspace = workspace, .runningVersion = QStringLiteral("1.3.0")}};
    AppcastUpdaterController updater{
        {.feed = feed,
         .defaults = defaults,
         .queue = queue,
         .workspace = workspace,
         .user = user,
         .delegate = delegate},
        {.publicKey = signer.publicKey(), .version = QStringLiteral("1.3.0"), .systemVersion = QStringLiteral("2.36")}};
};

} // namespace lumenfold::test

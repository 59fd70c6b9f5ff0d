#include "tests/components/templates/PickerWindow.h"

#include "service/HttpLumenfoldService.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeWorkspace.h"

namespace lumenfold::test {
namespace {

/// The picker with the real account and the real client, against the double of the service.
class PickerOnlineTest : public PickerWindowTest {
protected:
    PickerOnlineTest()
    {
        listedBy = &m_online;
        m_account.useService(server.baseURL());
        m_account.putKey("demo-key");
    }

    FakeAccount m_account;
    FakeWorkspace m_workspace;
    HttpLumenfoldService m_online{{.http = client,
                                   .auth = m_account.auth,
                                   .config = m_account.config,
                                   .workspace = m_workspace,
                                   .templates = store}};
    std::unique_ptr<NotificationCenter::Observation> m_follow =
        m_account.notifications.observe(AuthService::authStateChangedNotification, [this](const Notification &) {
            isSignedIn = m_account.auth.isSignedIn();
            notifications.post(AuthService::authStateChangedNotification);
        });
};

TEST_F(PickerOnlineTest, ListAndPicturesComeFromTheService)
{
    open();
    ASSERT_TRUE(waitFor([this] { return grid().isVisible(); }));
    EXPECT_EQ(grid().model()->rowCount(), 12);
    // The double's dates rise with the number until the year is over.
    EXPECT_EQ(shownNames().constFirst(), QStringLiteral("Template 11"));
    ASSERT_TRUE(waitFor([this] { return server.requests(Endpoint::preview).size() >= 6 && previews().loads() == 0; }));
    for (const ReceivedRequest &request : server.requests(Endpoint::preview)) {
        EXPECT_EQ(request.header("Authorization"), std::nullopt);
    }
    EXPECT_EQ(server.requests(Endpoint::templates).size(), 1);
}

TEST_F(PickerOnlineTest, WhatTheServerSaysIsShown)
{
    server.behave(Endpoint::templates, answering(500, "oops"), 1);
    open();
    ASSERT_TRUE(waitFor([this] { return isShown(QStringLiteral("Server returned 500: oops")); }));
    QPushButton *retry = button(QStringLiteral("Retry"));
    ASSERT_NE(retry, nullptr);
    retry->click();
    EXPECT_TRUE(waitFor([this] { return grid().isVisible(); }));
}

TEST_F(PickerOnlineTest, WithoutAnAnswerTheTextIsOurs)
{
    server.behave(Endpoint::templates, {.way = Behaviour::Way::cut});
    open();
    EXPECT_TRUE(waitFor([this] { return isShown(QStringLiteral("Couldn't load templates.")); }));
}

TEST_F(PickerOnlineTest, AKeyThatIsRefusedMeansNotConnected)
{
    m_account.putKey("another-key");
    open();
    ASSERT_TRUE(waitFor([this] { return !m_account.auth.isSignedIn(); }));
    m_account.queue.advance(std::chrono::milliseconds(0));
    EXPECT_TRUE(waitFor([this] { return isShown(QStringLiteral("Connect with your API key to load templates.")); }));
}

} // namespace
} // namespace lumenfold::test

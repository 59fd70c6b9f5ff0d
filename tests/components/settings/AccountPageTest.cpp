#include "tests/components/settings/SettingsWindowFixture.h"

#include "tests/support/desktop/Wait.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

const QString address = QStringLiteral("ada@example.org");

class AccountPageTest : public SettingsWindowTest {
protected:
    void presentAccount() { present(QStringLiteral("Account")); }

    [[nodiscard]] static QPushButton *button(const char *text)
    {
        return SettingsDesk::part<QPushButton>(QString::fromUtf8(text));
    }
    /// What stands on the page, apart from the buttons.
    [[nodiscard]] static QStringList words()
    {
        QStringList all;
        for (const QLabel *label : SettingsDesk::parts<QLabel>()) {
            all.append(label->text());
        }
        return all;
    }
};

TEST_F(AccountPageTest, WithoutAKeyItOffersToConnect)
{
    presentAccount();
    EXPECT_THAT(words(), ::testing::ElementsAre(
                             QStringLiteral("Not connected"),
                             QStringLiteral("Connect with your API key to enable Save to LumenFold. Screenshot "
                                            "capture, copy, save to disk, and pin all work without it.")));
    ASSERT_NE(button("Connect with API Key…"), nullptr);
    EXPECT_EQ(SettingsDesk::parts<QPushButton>().size(), 1);
    keyboard.press("Return");
    EXPECT_TRUE(waitFor([this] { return desk->apiKeySetup.presentations == 1; }));
    click(button("Connect with API Key…"));
    EXPECT_TRUE(waitFor([this] { return desk->apiKeySetup.presentations == 2; }));
}

TEST_F(AccountPageTest, ReturnIsTheAccountsOnlyThere)
{
    present();
    keyboard.press("Return");
    keyboard.press("Ctrl+Page_Up");
    ASSERT_TRUE(waitFor([] { return button("Connect with API Key…") != nullptr; }));
    EXPECT_EQ(desk->apiKeySetup.presentations, 0);
    EXPECT_TRUE(desk->recordings.empty());
}

TEST_F(AccountPageTest, WithAKeyItSaysWhoIsConnected)
{
    desk->signIn(address);
    presentAccount();
    EXPECT_THAT(words(),
                ::testing::ElementsAre(QStringLiteral("Connected to LumenFold"), address,
                                       QStringLiteral("Screenshots can be saved straight to your LumenFold assets.")));
    EXPECT_EQ(SettingsDesk::parts<QPushButton>().size(), 2);
    click(button("Change API Key…"));
    EXPECT_TRUE(waitFor([this] { return desk->apiKeySetup.presentations == 1; }));
    EXPECT_TRUE(desk->auth.isSignedIn());
}

TEST_F(AccountPageTest, DisconnectingSwitchesThePageWithTheNotification)
{
    desk->signIn(address);
    presentAccount();
    click(button("Disconnect"));
    ASSERT_TRUE(waitFor([this] { return !desk->auth.isSignedIn(); }));
    EXPECT_NE(button("Disconnect"), nullptr);
    desk->queue.runPosted();
    EXPECT_EQ(words().constFirst(), u"Not connected");
    EXPECT_NE(button("Connect with API Key…"), nullptr);
    EXPECT_EQ(button("Disconnect"), nullptr);
    EXPECT_TRUE(desk->keyring.items().empty());
}

TEST_F(AccountPageTest, ConnectingElsewhereSwitchesItToo)
{
    presentAccount();
    desk->signIn(address);
    EXPECT_EQ(words().value(0), u"Connected to LumenFold");
    EXPECT_EQ(words().value(1), address);
    desk->removeKey();
    EXPECT_EQ(words().value(0), u"Not connected");
}

TEST_F(AccountPageTest, AnAccountWithoutAnAddressTakesNoRoomForIt)
{
    desk->signIn({});
    presentAccount();
    EXPECT_THAT(words(),
                ::testing::ElementsAre(QStringLiteral("Connected to LumenFold"),
                                       QStringLiteral("Screenshots can be saved straight to your LumenFold assets.")));
}

TEST_F(AccountPageTest, AnAddressIsNoMarkup)
{
    const QString odd = QStringLiteral("<b>ada</b>@example.org");
    desk->signIn(odd);
    presentAccount();
    EXPECT_EQ(SettingsDesk::part<QLabel>(odd)->textFormat(), Qt::PlainText);
}

} // namespace
} // namespace lumenfold::test

#include "platform/workspace/PrivacyPanel.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

bool everything(const QString &)
{
    return true;
}

bool nothing(const QString &)
{
    return false;
}

TEST(PrivacyPanel, TheTwoSettingsAddressesMeanIt)
{
    EXPECT_TRUE(isPrivacyPanelAddress(
        QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"))));
    EXPECT_TRUE(isPrivacyPanelAddress(
        QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"))));
    EXPECT_FALSE(isPrivacyPanelAddress(QUrl(QStringLiteral("https://www.example/privacy"))));
    EXPECT_FALSE(isPrivacyPanelAddress(QUrl()));
}

TEST(PrivacyPanel, EachDesktopHasItsOwn)
{
    EXPECT_EQ(privacyPanelCall({QStringLiteral("ubuntu"), QStringLiteral("GNOME")}, everything),
              (ProgramCall{QStringLiteral("gnome-control-center"), {QStringLiteral("privacy")}}));
    EXPECT_EQ(privacyPanelCall({QStringLiteral("KDE")}, everything)->program, QStringLiteral("systemsettings"));
}

TEST(PrivacyPanel, APanelThatIsNotInstalledOrBelongsToAnotherDesktopIsNone)
{
    EXPECT_FALSE(privacyPanelCall({QStringLiteral("GNOME")}, nothing));
    EXPECT_FALSE(privacyPanelCall({QStringLiteral("openbox")}, everything));
    EXPECT_FALSE(privacyPanelCall({}, everything));
}

} // namespace
} // namespace lumenfold::test

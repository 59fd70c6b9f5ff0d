#include "platform/appearance/PortalAppearance.h"
#include "tests/components/appearance/FakeSettingsPortal.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QPalette>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

constexpr uint noPreference = 0;
constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

class PortalAppearanceTest : public ::testing::Test {
protected:
    ~PortalAppearanceTest() override { QApplication::setPalette(m_before); }

    /// Counts the notices from now on.
    void watch(const PortalAppearance &appearance)
    {
        QObject::connect(&appearance, &Appearance::changed, &m_watcher, [this] { ++notices; });
    }

    int notices = 0;

private:
    QObject m_watcher;
    const QPalette m_before = QApplication::palette();
};

TEST_F(PortalAppearanceTest, theDesktopsWordCountsAndComesByItself)
{
    FakeSettingsPortal portal(prefersDark);
    PortalAppearance appearance;
    watch(appearance);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::light);

    EXPECT_TRUE(waitFor([&] { return appearance.colorScheme() == ColorScheme::dark; }));
    EXPECT_EQ(notices, 1);
}

TEST_F(PortalAppearanceTest, aChangeIsFollowed)
{
    FakeSettingsPortal portal(prefersLight);
    PortalAppearance appearance;
    watch(appearance);
    ASSERT_TRUE(waitFor([&] { return portal.reads == 1; }));

    portal.change(prefersDark);
    EXPECT_TRUE(waitFor([&] { return appearance.colorScheme() == ColorScheme::dark; }));
    portal.change(noPreference);
    EXPECT_TRUE(waitFor([&] { return appearance.colorScheme() == ColorScheme::light; }));
    EXPECT_EQ(notices, 2);
}

TEST_F(PortalAppearanceTest, withoutAWordOfTheDesktopTheToolkitsColoursCount)
{
    FakeSettingsPortal portal(std::nullopt);
    PortalAppearance appearance;
    watch(appearance);
    ASSERT_TRUE(waitFor([&] { return portal.reads == 1; }));
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::light);

    QApplication::setPalette(QPalette(Qt::black));
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::dark);
    EXPECT_TRUE(waitFor([&] { return notices == 1; }));
}

TEST_F(PortalAppearanceTest, aPortalThatNeverAnswersIsNotWaitedFor)
{
    FakeSettingsPortal portal(prefersDark);
    portal.fallSilent();
    PortalAppearance appearance;
    watch(appearance);
    // The question arrives while this thread goes on, and the toolkit's colours count meanwhile.
    ASSERT_TRUE(waitFor([&] { return portal.reads == 1; }));
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::light);
    QApplication::setPalette(QPalette(Qt::black));
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::dark);
    EXPECT_TRUE(waitFor([&] { return notices == 1; }));
}

TEST_F(PortalAppearanceTest, withoutAPortalItIsTheSame)
{
    const PortalAppearance appearance;
    QApplication::setPalette(QPalette(Qt::black));
    EXPECT_TRUE(
        staysTrue([&] { return appearance.colorScheme() == ColorScheme::dark; }, std::chrono::milliseconds(200)));
}

} // namespace
} // namespace lumenfold::test

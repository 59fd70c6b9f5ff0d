#include "app/actions/SavedScreenshotName.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <ctime>
#include <optional>

namespace lumenfold {
namespace {

/// Moves the test to another time zone while it lives.
class LocalTimeZone {
public:
    explicit LocalTimeZone(const char *name)
    {
        if (qEnvironmentVariableIsSet("TZ")) {
            m_before = qgetenv("TZ");
        }
        qputenv("TZ", name);
        tzset();
    }
    ~LocalTimeZone()
    {
        if (m_before) {
            qputenv("TZ", *m_before);
        } else {
            qunsetenv("TZ");
        }
        tzset();
    }
    LocalTimeZone(const LocalTimeZone &) = delete;
    LocalTimeZone &operator=(const LocalTimeZone &) = delete;

private:
    std::optional<QByteArray> m_before;
};

TEST(SavedScreenshotName, hasDateAndTimeWithDots)
{
    EXPECT_EQ(savedScreenshotName(QDateTime({2026, 11, 15}, {2, 49, 30})),
              QStringLiteral("LumenFold 2026-11-15 at 02.49.30.png"));
}

TEST(SavedScreenshotName, countsTwentyFourHours)
{
    EXPECT_EQ(savedScreenshotName(QDateTime({2026, 1, 2}, {14, 5, 9})),
              QStringLiteral("LumenFold 2026-01-02 at 14.05.09.png"));
    EXPECT_EQ(savedScreenshotName(QDateTime({2026, 1, 2}, {0, 0, 0})),
              QStringLiteral("LumenFold 2026-01-02 at 00.00.00.png"));
}

TEST(SavedScreenshotName, isInLocalTime)
{
    // In the POSIX notation a zone 5:30 hours ahead of UTC has a negative offset.
    const LocalTimeZone zone("TST-5:30");
    EXPECT_EQ(savedScreenshotName(QDateTime({2026, 12, 31}, {20, 0, 0}, Qt::UTC)),
              QStringLiteral("LumenFold 2027-01-01 at 01.30.00.png"));
}

TEST(SavedScreenshotName, hasAsciiDigitsInEveryLanguage)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(savedScreenshotName(QDateTime({2026, 11, 15}, {14, 5, 9})),
              QStringLiteral("LumenFold 2026-11-15 at 14.05.09.png"));
    QLocale::setDefault(before);
}

TEST(SavedScreenshotName, dropsTheFractionOfTheSecond)
{
    EXPECT_EQ(savedScreenshotName(QDateTime({2026, 11, 15}, {2, 49, 30, 999})),
              QStringLiteral("LumenFold 2026-11-15 at 02.49.30.png"));
}

} // namespace
} // namespace lumenfold

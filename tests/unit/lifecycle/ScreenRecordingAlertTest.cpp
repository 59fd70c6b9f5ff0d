#include "app/lifecycle/ScreenRecordingAlert.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(ScreenRecordingAlert, TheProgramHasTheBestNameThereIs)
{
    EXPECT_EQ(productName(QStringLiteral("Shown"), QStringLiteral("plain")), u"Shown");
    EXPECT_EQ(productName(QString(), QStringLiteral("plain")), u"plain");
    EXPECT_EQ(productName(QString(), QString()), u"LumenFold");
}

TEST(ScreenRecordingAlert, SaysWhatToDoAndInWhichProgram)
{
    EXPECT_EQ(screenRecordingAlert(QStringLiteral("Name %1")),
              (Alert{.messageText = QStringLiteral("Enable Screen Recording for Name %1"),
                     .informativeText = QStringLiteral(
                         "Name %1 needs Screen Recording permission to capture your screen.\n\nIn System Settings "
                         "\u2192 Screen Recording, turn on Name %1. macOS will then offer to quit and reopen Name %1 "
                         "so the permission takes effect."),
                     .buttons = {QStringLiteral("Open System Settings"), QStringLiteral("Later")}}));
}

} // namespace
} // namespace lumenfold::test

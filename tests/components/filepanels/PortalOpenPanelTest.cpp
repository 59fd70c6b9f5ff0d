#include "platform/filepanels/PortalOpenPanel.h"

#include "tests/components/filepanels/FakeFileChooserPortal.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeOpenPanel.h"

#include <QDir>
#include <QTemporaryDir>
#include <QUrl>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using Manner = FakeFileChooserPortal::Manner;

class PortalOpenPanelTest : public ::testing::Test {
protected:
    void ask()
    {
        outcome.reset();
        choose();
    }
    QCoro::Task<> choose()
    {
        OpenPanel::Request request;
        request.title = QStringLiteral("Save Location");
        request.prompt = QStringLiteral("Choose");
        request.directory = folder.path();
        request.window = &window;
        const std::optional<QString> chosen = co_await panel.chooseDirectory(request);
        outcome = chosen;
    }
    void waitForRequest()
    {
        waitUntil("the request", [this] { return portal->requests > 0; });
    }
    [[nodiscard]] bool hasEnded() const
    {
        return waitFor([this] { return outcome.has_value(); });
    }

    QTemporaryDir folder;
    QWidget window;
    std::unique_ptr<FakeFileChooserPortal> portal = std::make_unique<FakeFileChooserPortal>();
    FakeOpenPanel fallback;
    PortalOpenPanel panel{fallback, 1s};
    std::optional<std::optional<QString>> outcome;
};

TEST_F(PortalOpenPanelTest, AsksTheDesktopForOneFolder)
{
    ask();
    waitForRequest();
    EXPECT_EQ(portal->title, u"Save Location");
    EXPECT_EQ(portal->parentWindow, QStringLiteral("x11:") + QString::number(window.winId(), 16));
    EXPECT_EQ(portal->options.value(QStringLiteral("accept_label")), QStringLiteral("Choose"));
    EXPECT_EQ(portal->options.value(QStringLiteral("directory")), true);
    EXPECT_EQ(portal->options.value(QStringLiteral("multiple")), false);
    EXPECT_EQ(portal->options.value(QStringLiteral("current_folder")).toByteArray(),
              QByteArray(folder.path().toUtf8() + '\0'));
    portal->respond(0, {QUrl::fromLocalFile(folder.path()).toString(QUrl::FullyEncoded)});
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(*outcome, folder.path());
    EXPECT_EQ(fallback.upCount(), 0);
}

TEST_F(PortalOpenPanelTest, APathOfAnyLettersComesBackAsItIs)
{
    const QString odd = folder.filePath(QString::fromUtf8("Bilder für 50 %"));
    ASSERT_TRUE(QDir().mkpath(odd));
    ask();
    waitForRequest();
    portal->respond(0, {QString::fromLatin1(QUrl::fromLocalFile(odd).toEncoded())});
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(*outcome, odd);
}

TEST_F(PortalOpenPanelTest, WhoCancelsHasChosenNothing)
{
    ask();
    waitForRequest();
    portal->respond(1);
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(*outcome, std::nullopt);
    EXPECT_EQ(fallback.upCount(), 0);
}

TEST_F(PortalOpenPanelTest, WhatIsNoFolderIsNoAnswer)
{
    for (const QStringList &uris :
         {QStringList(), QStringList{QStringLiteral("file:///nowhere/at/all")},
          QStringList{QStringLiteral("https://files.example/")}, QStringList{QStringLiteral("file:///"), {}}}) {
        portal->requests = 0;
        ask();
        waitForRequest();
        portal->respond(0, uris);
        ASSERT_TRUE(hasEnded());
        EXPECT_EQ(*outcome, std::nullopt);
    }
}

TEST_F(PortalOpenPanelTest, ARequestUnderAnotherPathIsFollowedToo)
{
    portal->manner = Manner::namesPathItself;
    ask();
    waitForRequest();
    // Whether the answer to the request has arrived cannot be seen from here; the user takes longer.
    EXPECT_TRUE(staysTrue([this] { return !outcome; }, 200ms));
    portal->respond(0, {QUrl::fromLocalFile(folder.path()).toString(QUrl::FullyEncoded)});
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(*outcome, folder.path());
}

TEST_F(PortalOpenPanelTest, WithoutAPortalAnotherPanelIsShown)
{
    const auto fallsBack = [this] {
        ask();
        EXPECT_TRUE(waitFor([this] { return fallback.upCount() == 1; }));
        EXPECT_EQ(fallback.shown.constLast().directory, folder.path());
        fallback.answer(folder.path());
        EXPECT_EQ(*outcome, folder.path());
    };
    portal->manner = Manner::refuses;
    fallsBack();
    portal->manner = Manner::isSilent;
    fallsBack();
    portal.reset();
    fallsBack();
}

TEST_F(PortalOpenPanelTest, APortalThatDiesTakesItsPanelAlong)
{
    ask();
    waitForRequest();
    EXPECT_TRUE(staysTrue([this] { return !outcome; }, 200ms));
    portal.reset();
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(*outcome, std::nullopt);
    EXPECT_EQ(fallback.upCount(), 0);
}

} // namespace
} // namespace lumenfold::test

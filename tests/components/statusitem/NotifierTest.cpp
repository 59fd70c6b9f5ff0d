/// The status item as a desktop reads it over the session bus.
#include "tests/components/statusitem/StatusAreaFixture.h"

#include "platform/statusitem/notifier/StatusNotifier.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/unit/LogWatch.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QFile>
#include <QMenu>

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

class NotifierTest : public StatusAreaTest {
protected:
    [[nodiscard]] QString text(const QString &property) { return host->itemProperty(property).toString(); }
};

TEST_F(NotifierTest, TheDesktopReadsWhatTheItemIs)
{
    makeHost();
    makeItem();
    host->waitForItem();
    EXPECT_EQ(text(QStringLiteral("Category")), QStringLiteral("ApplicationStatus"));
    EXPECT_EQ(text(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_FALSE(text(QStringLiteral("Id")).isEmpty());
    EXPECT_FALSE(text(QStringLiteral("Title")).isEmpty());
    EXPECT_EQ(text(QStringLiteral("IconAccessibleDesc")), QStringLiteral("LumenFold"));
    // A click with either button shows the menu.
    EXPECT_EQ(host->itemProperty(QStringLiteral("ItemIsMenu")), QVariant(true));
    EXPECT_EQ(host->itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path(), QStringLiteral("/MenuBar"));
    EXPECT_EQ(host->pixmapSides(), QList<int>({16, 22, 24, 32, 44, 48, 64}));
    EXPECT_TRUE(QFile::exists(text(QStringLiteral("IconThemePath")) + u'/' + text(QStringLiteral("IconName")) +
                              QStringLiteral(".svg")));
    const QDBusPendingCall answer = QDBusConnection::sessionBus().asyncCall(QDBusMessage::createMethodCall(
        host->items().first(), QStringLiteral("/StatusNotifierItem"),
        QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect")));
    ASSERT_TRUE(waitFor([&] { return answer.isFinished(); }));
    const QString xml = answer.reply().arguments().value(0).toString();
    EXPECT_TRUE(xml.contains(QStringLiteral("name=\"IconPixmap\" type=\"a(iiay)\""))) << qPrintable(xml);
    EXPECT_TRUE(xml.contains(QStringLiteral("name=\"ToolTip\" type=\"(sa(iiay)ss)\""))) << qPrintable(xml);
}

TEST_F(NotifierTest, TheMenuIsReadItemByItem)
{
    makeHost();
    makeItem();
    EXPECT_EQ(host->menuLines(),
              QStringList({QStringLiteral("Capture (Super+Alt+1)"), QStringLiteral("-"),
                           QStringLiteral("[ ] Connected · a__b@example.org"), QStringLiteral("Quit")}));
}

TEST_F(NotifierTest, AChosenEntryIsDoneAndADisabledOneIsNot)
{
    makeHost();
    makeItem();
    host->choose(QStringLiteral("Quit"));
    EXPECT_TRUE(waitFor([&] { return chosen == QStringList{QStringLiteral("Quit")}; }));
    host->choose(QStringLiteral("Connected · a__b@example.org"));
    host->choose(QStringLiteral("Capture"));
    EXPECT_TRUE(waitFor([&] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen.last(), QStringLiteral("Capture"));
}

TEST_F(NotifierTest, WhatIsNoEntryAndNoClickDoesNothing)
{
    makeHost();
    makeItem();
    const int quit = host->menu().last().id;
    EXPECT_EQ(host->sendEvent(4711, QStringLiteral("clicked")).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(host->sendEvent(quit, QStringLiteral("hovered")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(host->sendEvent(quit, QString(100'000, u'x')).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(host->sendEvent(0, QStringLiteral("clicked")).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(host->callMenu(QStringLiteral("Event"), {QStringLiteral("not a number")}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(host->callMenu(QStringLiteral("GetLayout"), {4711, -1, QStringList()}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(host->callMenu(QStringLiteral("GetProperty"), {quit, QStringLiteral("nothing")}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(host->callMenu(QStringLiteral("AboutToShow"), {4711}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(staysTrue([&] { return chosen.isEmpty(); }, 100ms));
}

TEST_F(NotifierTest, ThePanelsOtherQuestionsAreAnswered)
{
    makeHost();
    makeItem();
    const int quit = host->menu().last().id;
    const QDBusMessage label = host->callMenu(QStringLiteral("GetProperty"), {quit, QStringLiteral("label")});
    EXPECT_EQ(label.arguments().value(0).value<QDBusVariant>().variant().toString(), QStringLiteral("Quit"));
    const QDBusMessage group =
        host->callMenu(QStringLiteral("GetGroupProperties"),
                       {QVariant::fromValue(QList<int>{quit, 4711}), QStringList{QStringLiteral("label")}});
    EXPECT_EQ(group.signature(), QStringLiteral("a(ia{sv})"));
    const QDBusMessage about = host->callMenu(QStringLiteral("AboutToShow"), {0});
    EXPECT_EQ(about.arguments(), QVariantList{false});
    const QDBusMessage aboutGroup =
        host->callMenu(QStringLiteral("AboutToShowGroup"), {QVariant::fromValue(QList<int>{0, 4711})});
    EXPECT_EQ(aboutGroup.signature(), QStringLiteral("aiai"));
    EXPECT_EQ(qdbus_cast<QList<int>>(aboutGroup.arguments().value(1)), QList<int>{4711});
}

TEST_F(NotifierTest, AnotherMenuIsAnnounced)
{
    makeHost();
    makeItem();
    host->waitForItem();
    ASSERT_EQ(host->menu().size(), 4);
    const int before = host->signalCount(QStringLiteral("LayoutUpdated"));
    item->setMenu({command(QStringLiteral("Other"))});
    EXPECT_TRUE(waitFor([&] { return host->signalCount(QStringLiteral("LayoutUpdated")) == before + 1; }));
    EXPECT_EQ(host->menuLines(), QStringList{QStringLiteral("Other")});
}

TEST_F(NotifierTest, TheBadgeIsInThePictureOfEverySize)
{
    makeHost();
    makeItem();
    host->waitForItem();
    const QString plainName = text(QStringLiteral("IconName"));
    const int before = host->signalCount(QStringLiteral("NewIcon"));
    item->setUpdateBadgeVisible(true);
    EXPECT_TRUE(waitFor([&] { return host->signalCount(QStringLiteral("NewIcon")) == before + 1; }));
    EXPECT_NE(text(QStringLiteral("IconName")), plainName);
    const QList<int> sides = host->pixmapSides();
    for (const int side : sides) {
        EXPECT_EQ(host->pixmap(side).pixelColor(badgePlacement(side).circle.center()), QColor(255, 149, 0)) << side;
    }
    item->setUpdateBadgeVisible(false);
    EXPECT_TRUE(waitFor([&] { return host->signalCount(QStringLiteral("NewIcon")) == before + 2; }));
    EXPECT_EQ(text(QStringLiteral("IconName")), plainName);
    EXPECT_NE(host->pixmap(22).pixelColor(badgePlacement(22).circle.center()), QColor(255, 149, 0));
}

TEST_F(NotifierTest, ThePictureFollowsTheAppearance)
{
    const auto brightest = [](const QImage &image) {
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).alpha() == 255) {
                    found = std::max(found, image.pixelColor(x, y).lightness());
                }
            }
        }
        return found;
    };
    makeHost();
    makeItem();
    host->waitForItem();
    EXPECT_LT(brightest(host->pixmap(48)), 60);
    const int before = host->signalCount(QStringLiteral("NewIcon"));
    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_TRUE(waitFor([&] { return host->signalCount(QStringLiteral("NewIcon")) == before + 1; }));
    EXPECT_GT(brightest(host->pixmap(48)), 200);
}

TEST_F(NotifierTest, AWatcherThatComesLateGetsTheItem)
{
    makeItem();
    EXPECT_TRUE(staysTrue([&] { return true; }, 100ms));
    makeHost();
    host->waitForItem();
    EXPECT_EQ(host->menu().size(), 4);
}

TEST_F(NotifierTest, AWatcherThatStartsAnewGetsTheItemAgain)
{
    makeHost();
    makeItem();
    for (int round = 0; round < 3; ++round) {
        host->waitForItem();
        EXPECT_EQ(host->registrations(), 1);
        makeHost();
    }
    host->waitForItem();
    EXPECT_EQ(host->menu().size(), 4);
}

TEST_F(NotifierTest, TheItemGoesWithTheProgram)
{
    makeHost();
    makeItem();
    host->waitForItem();
    item.reset();
    EXPECT_TRUE(waitFor([&] { return host->items().isEmpty(); }));
    // And comes back under the same name.
    makeItem();
    host->waitForItem();
}

TEST_F(NotifierTest, APanelThatShowsNoMenusGetsOneOfOurs)
{
    for (const char *method : {"Activate", "ContextMenu"}) {
        makeHost();
        makeItem();
        const QDBusMessage answer = host->callItem(QString::fromLatin1(method), {100, 50});
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << qPrintable(answer.errorMessage());
        ASSERT_TRUE(waitFor([] { return openMenu() != nullptr; })) << method;
        chooseInOpenMenu(3);
        EXPECT_TRUE(waitFor([&] { return chosen == QStringList{QStringLiteral("Quit")}; })) << method;
        EXPECT_TRUE(waitFor([] { return openMenu() == nullptr; }));
        chosen.clear();
    }
    EXPECT_EQ(host->callItem(QStringLiteral("SecondaryActivate"), {100, 50}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(host->callItem(QStringLiteral("Scroll"), {10, QStringLiteral("vertical")}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(NotifierTest, WithoutABusItIsNotShownAndNobodyMinds)
{
    StatusNotifier notifier(QDBusConnection(QStringLiteral("no such connection")));
    EXPECT_EQ(notifier.standing(), StatusNotifier::Standing::notShown);
    notifier.setMenu(threeItems());
    notifier.setPicture({});
}

TEST_F(NotifierTest, ABusThatEndsIsSurvived)
{
    auto bus = std::make_unique<SessionBus>();
    const QString name = QStringLiteral("a bus that ends");
    StatusNotifier notifier(QDBusConnection::connectToBus(bus->address(), name));
    auto panel = std::make_unique<StatusNotifierHost>(bus->address());
    panel->waitForItem();
    EXPECT_TRUE(waitFor([&] { return notifier.standing() == StatusNotifier::Standing::shown; }));
    panel.reset();
    bus.reset();
    EXPECT_TRUE(waitFor([&] { return notifier.standing() == StatusNotifier::Standing::notShown; }));
    notifier.setMenu(threeItems());
    QDBusConnection::disconnectFromBus(name);
}

} // namespace
} // namespace lumenfold::test

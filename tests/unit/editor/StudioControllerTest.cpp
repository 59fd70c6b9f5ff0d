#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/editor/StudioControllerFixture.h"

#include <QJsonDocument>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::SizeIs;

const QString ignored = u"LumenFold: ignored editor message from an untrusted frame or origin."_s;

QJsonObject membersOf(const FakeEditorView::Delivery &delivery)
{
    return QJsonDocument::fromJson(delivery.members).object();
}

TEST_F(StudioControllerTest, OpensAWindowWithTheEditor)
{
    presentAndLoad(4, u"1"_s);
    ASSERT_NE(window(), nullptr);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_EQ(window()->windowTitle(), u"Edit in LumenFold"_s);
    EXPECT_EQ(window()->minimumSize(), QSize(760, 560));
    EXPECT_EQ(window()->palette().color(QPalette::Window), QColor(23, 25, 35));
    EXPECT_EQ(page.loads, QList{QUrl(u"https://www.example.org/integration/electron?apiKey=demo-key"_s)});
    EXPECT_EQ(workspace.activationPolicy(), ActivationPolicy::regular);
    ASSERT_EQ(page.made.size(), 1);
    EXPECT_TRUE(page.made[0].bridgeScript.contains(u"EXPECTED_ORIGIN = 'https://www.example.org'"_s));
    EXPECT_EQ(page.made[0].messageNames, (QStringList{u"lumenfoldLoaded"_s, u"lumenfoldImage"_s}));
}

TEST_F(StudioControllerTest, TheEngineStartsInATurnOfItsOwn)
{
    presentAndLoad(4, u"1"_s);
    EXPECT_EQ(page.steps, (QStringList{u"engine"_s, u"turn of the event loop"_s, u"view"_s}));
}

TEST_F(StudioControllerTest, ClosingWhileTheEngineStartsLeavesNothingBehind)
{
    page.onEngineStart = [&] { window()->close(); };
    present(4, u"1"_s);
    EXPECT_TRUE(waitFor([&] { return page.steps.size() == 2; }));
    EXPECT_TRUE(staysTrue([&] { return page.view == nullptr; }, 50ms));
    page.onEngineStart = nullptr;
    const Image second = presentAndLoad(5, u"2"_s);
    sayLoaded();
    EXPECT_TRUE(isDelivered(second, 0));
}

TEST_F(StudioControllerTest, HandsTheScreenshotOverWhenThePageSaysThatItIsThere)
{
    templates.selected = u"template-7"_s;
    const Image image = presentAndLoad(4, u"1"_s);
    EXPECT_TRUE(page.deliveries.isEmpty());
    sayLoaded();
    ASSERT_EQ(page.deliveries.size(), 1);
    EXPECT_TRUE(isDelivered(image, 0));
    EXPECT_EQ(page.deliveries[0].origin, origin);
    EXPECT_EQ(membersOf(page.deliveries[0]), (QJsonObject{{u"type"_s, u"hello"_s},
                                                          {u"provider"_s, u"electron"_s},
                                                          {u"screenshotId"_s, u"1"_s},
                                                          {u"apiKey"_s, u"demo-key"_s},
                                                          {u"templateId"_s, u"template-7"_s}}));
    // Once for each time it is presented.
    sayLoaded();
    EXPECT_EQ(page.deliveries.size(), 1);
}

TEST_F(StudioControllerTest, ASecondScreenshotGoesToTheLoadedPageAtOnce)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    const Image second = present(5, u"2"_s);
    EXPECT_TRUE(isDelivered(second, 1));
    EXPECT_EQ(page.loads.size(), 1);
    EXPECT_EQ(page.made.size(), 1);
}

TEST_F(StudioControllerTest, OfScreenshotsPresentedWhileThePageLoadsItGetsTheLatest)
{
    presentAndLoad(4, u"1"_s);
    const Image second = present(5, u"2"_s);
    EXPECT_TRUE(page.deliveries.isEmpty());
    sayLoaded();
    ASSERT_EQ(page.deliveries.size(), 1);
    EXPECT_TRUE(isDelivered(second, 0));
    EXPECT_EQ(membersOf(page.deliveries[0]).value(u"screenshotId").toString(), u"2"_s);
}

TEST_F(StudioControllerTest, APictureThatCannotBeEncodedOpensNothing)
{
    expectLogLine(u"LumenFold: could not encode screenshot for the in-app editor."_s);
    controller->present(Image::withoutRepresentation({4, 3}), u"1"_s, {});
    ASSERT_TRUE(waitFor([] { return !logLines().isEmpty(); }));
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(workspace.activations, 0);
}

TEST_F(StudioControllerTest, WithoutAKeyThereIsNoneInTheAddress)
{
    removeKey();
    presentAndLoad(4, QString());
    EXPECT_EQ(page.loads, QList{QUrl(u"https://www.example.org/integration/electron"_s)});
    sayLoaded();
    EXPECT_EQ(membersOf(page.deliveries[0]), (QJsonObject{{u"type"_s, u"hello"_s}, {u"provider"_s, u"electron"_s}}));
}

TEST_F(StudioControllerTest, AnExportHidesTheWindowAndHandsThePictureBack)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    const Image edited = picture(9);
    exportImage(dataURLOf(edited));
    ASSERT_TRUE(waitFor([&] { return !exported.empty(); }));
    EXPECT_EQ(exported[0].pngData(), edited.pngData());
    EXPECT_FALSE(window()->isVisible());
    EXPECT_EQ(workspace.activationPolicy(), ActivationPolicy::accessory);
    // The page stays for the next time.
    const Image second = present(5, u"2"_s);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(isDelivered(second, 1));
    EXPECT_EQ(page.loads.size(), 1);
}

TEST_F(StudioControllerTest, AnExportThatCannotBeFetchedIsSaid)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    const auto fetchInVain = [&] {
        EXPECT_TRUE(view().announce(u"lumenfoldImage"_s, 1'000'000, origin));
        page.fetches.last().done(std::nullopt);
    };
    expectLogLine(u"LumenFold: could not fetch the exported image from the editor."_s, 2);
    fetchInVain();
    ASSERT_EQ(alerts.shown.size(), 1);
    EXPECT_EQ(alerts.shown[0].messageText, u"The edited picture did not arrive"_s);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(exported.empty());
    // A page that does it in a loop is told of once for each time that the user opens it.
    fetchInVain();
    EXPECT_TRUE(alerts.answer(alertFirstButtonReturn));
    fetchInVain();
    EXPECT_EQ(alerts.shown.size(), 1);
    present(5, u"2"_s);
    fetchInVain();
    EXPECT_EQ(alerts.shown.size(), 2);
    EXPECT_TRUE(alerts.answer(alertFirstButtonReturn));
    // And the next one that arrives is taken.
    exportImage(dataURLOf(picture(9)));
    EXPECT_TRUE(waitFor([&] { return exported.size() == 1; }));
}

TEST_F(StudioControllerTest, AnExportOfAPageWhoseProcessEndedIsSaidByTheWindowAlone)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    EXPECT_TRUE(view().announce(u"lumenfoldImage"_s, 1'000'000, origin));
    expectLogLine(u"LumenFold: the editor's page is not there: it broke"_s);
    view().client().failed(ViewTrouble::ended, u"it broke"_s);
    page.fetches.last().done(std::nullopt);
    EXPECT_TRUE(window()->showsNotice());
    EXPECT_TRUE(alerts.shown.isEmpty());
}

TEST_F(StudioControllerTest, ALongExportIsFetched)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    const QByteArray text = dataURLOf(picture(9)).toLatin1();
    EXPECT_TRUE(view().announce(u"lumenfoldImage"_s, text.size(), origin));
    ASSERT_EQ(page.fetches.size(), 1);
    EXPECT_EQ(page.fetches[0].text.document, view().document);
    EXPECT_EQ(page.fetches[0].text.length, text.size());
    EXPECT_TRUE(page.fetches[0].isWanted());
    page.fetches[0].done(QByteArrayList{text.first(30), text.sliced(30, 1), text.sliced(31)});
    ASSERT_TRUE(waitFor([&] { return !exported.empty(); }));
    EXPECT_EQ(exported[0].pngData(), picture(9).pngData());
}

TEST_F(StudioControllerTest, NothingIsFetchedFromElsewhere)
{
    expectLogLine(ignored);
    presentAndLoad(4, u"1"_s);
    EXPECT_FALSE(view().announce(u"lumenfoldImage"_s, 1'000'000, u"https://evil.example"_s));
    EXPECT_TRUE(page.fetches.isEmpty());
    // And no more of what began on the editor's own page.
    EXPECT_TRUE(view().announce(u"lumenfoldImage"_s, 1'000'000, origin));
    view().shown = QUrl(u"https://evil.example/"_s);
    EXPECT_FALSE(page.fetches[0].isWanted());
}

TEST_F(StudioControllerTest, NothingIsFetchedThatNobodyTakes)
{
    presentAndLoad(4, u"1"_s);
    EXPECT_FALSE(view().announce(u"lumenfoldImage"_s, qsizetype{200} * 1024 * 1024, origin));
    // That one is heard whatever it holds.
    EXPECT_FALSE(view().announce(u"lumenfoldLoaded"_s, 1'000'000, origin));
    EXPECT_THAT(page.deliveries, SizeIs(1));
    // When the window is gone from the screen.
    exportImage(dataURLOf(picture(9)));
    ASSERT_TRUE(waitFor([&] { return !exported.empty(); }));
    EXPECT_FALSE(view().announce(u"lumenfoldImage"_s, 1'000'000, origin));
    EXPECT_TRUE(page.fetches.isEmpty());
}

TEST_F(StudioControllerTest, AnExportWithoutACommaDoesNothingAndSaysNothing)
{
    presentAndLoad(4, u"1"_s);
    exportImage(u"no picture"_s);
    exportImage(QString());
    EXPECT_TRUE(staysTrue([&] { return window()->isVisible() && exported.empty(); }, 50ms));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(StudioControllerTest, AnExportThatIsNoPictureLeavesTheWindowOpen)
{
    const QString line = u"LumenFold: could not decode exported image from the editor."_s;
    expectLogLine(line, 2);
    presentAndLoad(4, u"1"_s);
    exportImage(u"data:image/png;base64,!"_s);
    ASSERT_TRUE(waitFor([&] { return logLines().count(line) == 1; }));
    exportImage(u"data:image/png;base64,QUJD"_s);
    ASSERT_TRUE(waitFor([&] { return logLines().count(line) == 2; }));
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(exported.empty());
    EXPECT_FALSE(view().post(u"lumenfoldImage"_s, std::nullopt, origin));
    EXPECT_TRUE(exported.empty());
}

TEST_F(StudioControllerTest, APageThatExportsInALoopMakesOneCardForEachTimeItIsShown)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    for (int count = 0; count < 100; ++count) {
        exportImage(dataURLOf(picture(9)));
    }
    ASSERT_TRUE(waitFor([&] { return !exported.empty(); }));
    for (int count = 0; count < 100; ++count) {
        exportImage(dataURLOf(picture(9)));
    }
    EXPECT_TRUE(staysTrue([&] { return exported.size() == 1; }, 50ms));
}

TEST_F(StudioControllerTest, AnExportRightBehindOneThatIsNoPictureCounts)
{
    expectLogLine(u"LumenFold: could not decode exported image from the editor."_s);
    presentAndLoad(4, u"1"_s);
    exportImage(u"data:image/png;base64,QUJD"_s);
    exportImage(u"no picture either"_s);
    exportImage(dataURLOf(picture(9)));
    ASSERT_TRUE(waitFor([&] { return !exported.empty(); }));
    EXPECT_EQ(exported[0].pngData(), picture(9).pngData());
}

TEST_F(StudioControllerTest, APictureThatWasExportedBeforeTheWindowClosedIsNotLost)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    exportImage(dataURLOf(picture(9)));
    closeWindow();
    EXPECT_TRUE(waitFor([&] { return exported.size() == 1; }));
    EXPECT_EQ(window(), nullptr);
}

TEST_F(StudioControllerTest, MessagesOfOtherOriginsAreIgnored)
{
    presentAndLoad(4, u"1"_s);
    expectLogLine(ignored, 4);
    for (const QString &other :
         {u"https://evil.example"_s, u"null"_s, u"http://www.example.org"_s, u"https://www.example.org:8443"_s}) {
        EXPECT_FALSE(view().post(u"lumenfoldLoaded"_s, u"loaded"_s, other)) << qPrintable(other);
    }
    EXPECT_TRUE(page.deliveries.isEmpty());
}

TEST_F(StudioControllerTest, AMessageIsIgnoredWhenThePageIsElsewhereByNow)
{
    presentAndLoad(4, u"1"_s);
    view().shown = QUrl(u"https://evil.example/"_s);
    expectLogLine(ignored);
    EXPECT_FALSE(view().post(u"lumenfoldLoaded"_s, u"loaded"_s, origin));
    EXPECT_TRUE(page.deliveries.isEmpty());
}

TEST_F(StudioControllerTest, APageThatPostsAndPostsDoesNotFillTheLog)
{
    presentAndLoad(4, u"1"_s);
    expectLogLine(ignored, 20);
    for (int count = 0; count < 1000; ++count) {
        EXPECT_FALSE(view().post(u"lumenfoldImage"_s, u"x"_s, u"https://evil.example"_s));
    }
}

TEST_F(StudioControllerTest, TheScreenshotIsWithheldWhenThePageIsElsewhere)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    view().shown = QUrl(u"https://evil.example/"_s);
    expectLogLine(u"LumenFold: editor window is not on the trusted origin; withholding screenshot."_s);
    const Image second = present(5, u"2"_s);
    EXPECT_EQ(page.deliveries.size(), 1);
    // It is not lost.
    view().show(QUrl(origin));
    sayLoaded();
    EXPECT_TRUE(isDelivered(second, 1));
}

TEST_F(StudioControllerTest, AnotherDocumentHasToSayThatItIsThereAgain)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    view().show(QUrl(origin + u"/reloaded"_s));
    const Image second = present(5, u"2"_s);
    EXPECT_EQ(page.deliveries.size(), 1);
    sayLoaded();
    EXPECT_TRUE(isDelivered(second, 1));
}

TEST_F(StudioControllerTest, AHandOverThatFailsIsInTheLog)
{
    presentAndLoad(4, u"1"_s);
    sayLoaded();
    expectLogLine(u"LumenFold: failed to hand image to editor: it broke"_s);
    page.deliveries[0].done(QString());
    page.deliveries[0].done(u"it broke"_s);
}

TEST_F(StudioControllerTest, AMessageWithAnUnknownNameDoesNothing)
{
    presentAndLoad(4, u"1"_s);
    EXPECT_FALSE(view().post(u"other"_s, dataURLOf(picture(3)), origin));
    EXPECT_TRUE(page.deliveries.isEmpty());
    EXPECT_FALSE(view().announce(u"other"_s, 1'000'000, origin));
    EXPECT_FALSE(static_cast<EditorViewClient &>(view().client()).messageReceived({}));
}

TEST_F(StudioControllerTest, TheWindowIsHiddenForACaptureAndComesBack)
{
    EXPECT_FALSE(controller->hideForCapture());
    presentAndLoad(4, u"1"_s);
    for (int capture = 0; capture < 2; ++capture) {
        EXPECT_TRUE(controller->hideForCapture());
        EXPECT_FALSE(window()->isVisible());
        EXPECT_FALSE(controller->hideForCapture());
        controller->restoreAfterCapture();
        EXPECT_TRUE(window()->isVisible());
    }
    closeWindow();
    EXPECT_FALSE(controller->hideForCapture());
    controller->restoreAfterCapture();
    EXPECT_EQ(window(), nullptr);
}

TEST_F(StudioControllerTest, AnExportDuringACaptureCounts)
{
    presentAndLoad(4, u"1"_s);
    EXPECT_TRUE(controller->hideForCapture());
    exportImage(dataURLOf(picture(9)));
    EXPECT_TRUE(waitFor([&] { return exported.size() == 1; }));
}

TEST_F(StudioControllerTest, ClosingTakesThePageAwayAndForgetsTheScreenshot)
{
    presentAndLoad(4, u"1"_s);
    closeWindow();
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(page.view, nullptr);
    EXPECT_EQ(page.stops, 1);
    EXPECT_EQ(workspace.activationPolicy(), ActivationPolicy::accessory);
    // The next one is a new page with the new picture.
    const Image second = presentAndLoad(5, u"2"_s);
    EXPECT_EQ(page.made.size(), 2);
    sayLoaded();
    ASSERT_EQ(page.deliveries.size(), 1);
    EXPECT_TRUE(isDelivered(second, 0));
}

TEST_F(StudioControllerTest, ClosingDuringTheLoadLeavesNothingBehind)
{
    present(4, u"1"_s);
    closeWindow();
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(staysTrue([&] { return page.view == nullptr; }, 50ms));
    presentAndLoad(5, u"2"_s);
    EXPECT_NE(page.view, nullptr);
}

TEST_F(StudioControllerTest, ClosingWhileAFileIsChosenWaitsForThePage)
{
    presentAndLoad(4, u"1"_s);
    panels.filesToOpen = {u"/home/someone/a.png"_s};
    panels.whileOpen = [&] {
        window()->close();
        QCoreApplication::processEvents();
        // Whoever waits for the panel is part of the page.
        EXPECT_NE(page.view, nullptr);
    };
    EXPECT_TRUE(view().client().chooseFiles(false).isEmpty());
    EXPECT_TRUE(waitFor([&] { return page.view == nullptr; }));
}

TEST_F(StudioControllerTest, TheControllerMayGoAtAnyTime)
{
    controller->present(picture(4), u"1"_s, {});
    controller.reset();
    makeController();
    present(4, u"1"_s);
    controller.reset();
    makeController();
    presentAndLoad(4, u"1"_s);
    exportImage(dataURLOf(picture(9)));
    controller.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(exported.empty());
}

} // namespace
} // namespace lumenfold::test

/// A picture goes to the double's editor and comes back.
#include "tests/components/editor/EditorDesk.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

using RoundTripTest = EditorDesk;

/// What a process has in its memory of the engine's code and constants, in KiB.
long engineCodeOf(pid_t process)
{
    QFile maps(u"/proc/%1/smaps"_s.arg(process));
    if (!maps.open(QIODevice::ReadOnly)) {
        return -1;
    }
    long sum = 0;
    bool isWanted = false;
    for (const QByteArray &line : maps.readAll().split('\n')) {
        long figure = 0;
        if (line.contains('/')) {
            isWanted = line.contains("libQt6WebEngineCore") && !line.contains(" rw");
        } else if (isWanted && std::sscanf(line.constData(), "Rss: %ld", &figure) == 1) {
            sum += figure;
        } else if (isWanted && std::sscanf(line.constData(), "Anonymous: %ld", &figure) == 1) {
            sum -= figure;
        }
    }
    return sum;
}

QImage pixelsOf(const Image &image)
{
    return image.pixels().convertToFormat(QImage::Format_RGB32);
}

TEST_F(RoundTripTest, ThePageGetsThePictureAndWhatBelongsToIt)
{
    templates.selected = u"template-7"_s;
    presentAndWait(noise({64, 48}), u"card-1"_s);
    const QUrlQuery shown = told("shown").first();
    EXPECT_EQ(shown.queryItemValue(u"type"_s), u"hello"_s);
    EXPECT_EQ(shown.queryItemValue(u"provider"_s), u"electron"_s);
    EXPECT_EQ(shown.queryItemValue(u"screenshotId"_s), u"card-1"_s);
    EXPECT_EQ(shown.queryItemValue(u"apiKey"_s), u"demo-key"_s);
    EXPECT_EQ(shown.queryItemValue(u"templateId"_s), u"template-7"_s);
    EXPECT_EQ(shown.queryItemValue(u"width"_s), u"64"_s);
    EXPECT_EQ(shown.queryItemValue(u"height"_s), u"48"_s);
    const auto requests = service->requests(ServiceDouble::Endpoint::page);
    EXPECT_EQ(requests.first().target, "/integration/electron?apiKey=demo-key");
}

TEST_F(RoundTripTest, AnExportAsDataURLComesBackToThePixel)
{
    // More than one piece in each direction.
    const QImage picture = noise({1200, 900});
    presentAndWait(picture);
    strike("e");
    waitForExports(1);
    EXPECT_EQ(pixelsOf(exported[0]), picture);
    EXPECT_FALSE(window()->isVisible());
}

TEST_F(RoundTripTest, AnExportAsBlobComesBackWithWhatWasDrawn)
{
    QImage picture = noise({300, 200});
    presentAndWait(picture);
    strike("d");
    strike("b");
    waitForExports(1);
    for (int y = 0; y < 50; ++y) {
        for (int x = 0; x < 150; ++x) {
            picture.setPixel(x, y, qRgb(255, 0, 128));
        }
    }
    EXPECT_EQ(pixelsOf(exported[0]), picture);
}

TEST_F(RoundTripTest, AStrictPageGetsAndGivesAsAnyOther)
{
    // What the page itself may load is no matter of ours, and the other way round.
    serve(R"(
        const policy = document.createElement('meta');
        policy.httpEquiv = 'Content-Security-Policy';
        policy.content = "default-src 'none'; script-src 'unsafe-inline'; connect-src 'self'";
        document.head.append(policy);
        addEventListener('message', event => {
            if (event.data.type !== 'hello') return;
            fetch('data:,x').then(() => report('not strict'), () => report('strict'));
            postMessage({ type: 'image', data: event.data.src }, '*');
        });
        postMessage({ type: 'loaded' }, '*');)");
    const QImage picture = noise({1200, 900});
    present(picture);
    waitForExports(1);
    EXPECT_EQ(pixelsOf(exported[0]), picture);
    waitForReport(u"strict"_s);
}

TEST_F(RoundTripTest, AnExportThatIsNotAsciiIsNoPicture)
{
    const QString line = u"LumenFold: could not decode exported image from the editor."_s;
    expectLogLine(line);
    serve("postMessage({type: 'image', data: 'data:image/png;base64,' + '\u00e4'.repeat(3000000)}, '*');"
          "report('posted');");
    present(noise({8, 8}));
    waitForReport(u"posted"_s);
    EXPECT_TRUE(waitFor([&] { return logLines().contains(line); }, patience));
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(RoundTripTest, TheLoadedPageTakesTheNextPictureWithoutBeingLoadedAgain)
{
    presentAndWait(noise({64, 48}), u"1"_s);
    strike("e");
    waitForExports(1);
    presentAndWait(noise({80, 60}), u"2"_s);
    EXPECT_EQ(told("shown").last().queryItemValue(u"screenshotId"_s), u"2"_s);
    EXPECT_EQ(service->begun(ServiceDouble::Endpoint::page),
              static_cast<int>(service->requests(ServiceDouble::Endpoint::page).size()));
    qsizetype loads = 0;
    for (const ReceivedRequest &request : service->requests(ServiceDouble::Endpoint::page)) {
        loads += request.path() == "/integration/electron" ? 1 : 0;
    }
    EXPECT_EQ(loads, 1);
    strike("e");
    waitForExports(2);
    EXPECT_EQ(exported[1].pixelSize(), (PixelSize{80, 60}));
}

TEST_F(RoundTripTest, APictureThatIsPresentedWhileThePageLoadsIsTheOneItGets)
{
    service->behave(ServiceDouble::Endpoint::page, {.pause = std::chrono::milliseconds(500)}, 1);
    present(noise({64, 48}), u"1"_s);
    presentAndWait(noise({80, 60}), u"2"_s);
    EXPECT_EQ(told("shown").size(), 1);
    EXPECT_EQ(told("shown").first().queryItemValue(u"screenshotId"_s), u"2"_s);
}

TEST_F(RoundTripTest, AfterClosingThereIsNoPageAndNoProcessOfOne)
{
    presentAndWait(noise({64, 48}));
    EXPECT_FALSE(renderers().isEmpty());
    closeWindow();
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(waitFor([] { return renderers().isEmpty(); }, patience));
    // And everything begins once more.
    presentAndWait(noise({80, 60}));
}

TEST_F(RoundTripTest, TheEnginesFirstProcessKeepsLittleOfWhatOnlyLoadingNeeded)
{
    presentAndWait(noise({64, 48}));
    const QList<pid_t> waiting = processes("zygote");
    ASSERT_FALSE(waiting.isEmpty());
    for (const pid_t process : waiting) {
        // The loader alone reads 20 MiB.
        constexpr long most = 12 * 1024;
        EXPECT_GT(engineCodeOf(process), 0);
        EXPECT_LT(engineCodeOf(process), most);
    }
}

TEST_F(RoundTripTest, ClosingWhileThePageLoadsLeavesNothingBehind)
{
    service->behave(ServiceDouble::Endpoint::page, {.way = Behaviour::Way::silence});
    present(noise({64, 48}));
    waitUntil(
        "the request", [&] { return service->begun(ServiceDouble::Endpoint::page) > 0; }, patience);
    closeWindow();
    EXPECT_TRUE(waitFor([] { return renderers().isEmpty(); }, patience));
}

TEST_F(RoundTripTest, ACaptureHidesTheWindowAndThePageGoesOn)
{
    presentAndWait(noise({64, 48}));
    for (int capture = 0; capture < 2; ++capture) {
        EXPECT_TRUE(controller->hideForCapture());
        EXPECT_FALSE(window()->isVisible());
        controller->restoreAfterCapture();
    }
    strike("e");
    waitForExports(1);
}

TEST_F(RoundTripTest, NothingOfAPageIsKept)
{
    serve("const before = localStorage.getItem('kept'); localStorage.setItem('kept', 'yes');"
          "report('before: ' + before + ' ' + document.cookie); document.cookie = 'kept=yes; max-age=3600';");
    present(noise({8, 8}));
    waitForReport(u"before: null "_s);
    closeWindow();
    present(noise({8, 8}));
    waitUntil(
        "the second report", [&] { return reports().size() == 2; }, patience);
    EXPECT_EQ(reports()[1], u"before: null "_s);
}

} // namespace
} // namespace lumenfold::test

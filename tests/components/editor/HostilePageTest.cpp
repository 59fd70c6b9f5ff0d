/// Pages that mean no good, and what they achieve: nothing. Each test is one attempt.
#include "tests/components/editor/EditorDesk.h"

#include "editor/bridge/DataUrl.h"

#include <QApplication>
#include <QBuffer>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QString ignored = u"LumenFold: ignored editor message from an untrusted frame or origin."_s;

class HostilePageTest : public EditorDesk {
protected:
    /// A picture as pages export it.
    [[nodiscard]] static QByteArray dataURL()
    {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        noise({16, 12}).save(&buffer, "PNG");
        return "data:image/png;base64," + png.toBase64();
    }
    [[nodiscard]] static QByteArray exporting()
    {
        return "postMessage({type: 'image', data: '" + dataURL() + "'}, '*');";
    }
    void presentSomething(const QString &id = u"1"_s) { present(noise({64, 48}), id); }
    void expectNoExport()
    {
        EXPECT_TRUE(staysTrue([&] { return exported.empty(); }, 300ms));
    }
};

TEST_F(HostilePageTest, FindsTwoFunctionsAndNothingElse)
{
    serve(R"(
        const own = new Set(Object.getOwnPropertyNames(window));
        const frame = document.createElement('iframe');
        document.body.append(frame);
        const usual = new Set(Object.getOwnPropertyNames(frame.contentWindow));
        report('new: ' + [...own].filter(name => !usual.has(name)).sort());
        report('handlers: ' + Object.getOwnPropertyNames(window.webkit) + ' ' +
               Object.getOwnPropertyNames(window.webkit.messageHandlers) + ' ' +
               Object.getOwnPropertyNames(window.webkit.messageHandlers.lumenfoldImage));
        report('text: ' + window.webkit.messageHandlers.lumenfoldImage.postMessage.toString().includes('token'));)");
    presentSomething();
    waitForReport(u"handlers: messageHandlers lumenfoldLoaded,lumenfoldImage postMessage"_s);
    // Those are functions and variables of the page itself, beside ours.
    const QString found = reports().filter(u"new: "_s).value(0);
    EXPECT_TRUE(found.contains(u"webkit"_s)) << qPrintable(found);
    for (const QString &name : {u"qt"_s, u"QWebChannel"_s, u"lumenfoldHandOver"_s, u"program"_s}) {
        EXPECT_FALSE(found.mid(5).split(u',').contains(name)) << qPrintable(found);
    }
}

TEST_F(HostilePageTest, CallsTheTwoFunctionsItself)
{
    serve("const handlers = window.webkit.messageHandlers;"
          "addEventListener('message', event => { if (event.data.type === 'hello')"
          "  handlers.lumenfoldImage.postMessage('" +
          dataURL() + "'); });handlers.lumenfoldLoaded.postMessage('loaded');");
    presentSomething();
    // On the editor's own origin that is its right, and does no more than the messages do.
    waitForExports(1);
}

TEST_F(HostilePageTest, AForeignSubFramePosts)
{
    serveElsewhere("/frame", "report('in the frame: ' + typeof window.webkit + ' ' + typeof window.qt);"
                             "top.postMessage({type: 'loaded'}, '*');top." +
                                 exporting() + "try { top.webkit.messageHandlers.lumenfoldImage.postMessage('" +
                                 dataURL() +
                                 "'); } catch (error) { report(error.name); } "
                                 "addEventListener('message', () => report('frame heard something'));");
    serve("document.body.innerHTML = '<iframe src=\"' + elsewhere + '/frame\"></iframe>';");
    presentSomething();
    waitForReport(u"in the frame: undefined undefined"_s);
    waitForReport(u"SecurityError"_s);
    expectNoExport();
    EXPECT_FALSE(reports().contains(u"frame heard something"_s));
}

TEST_F(HostilePageTest, ASubFrameOfTheSameOriginHasNoBridgeOfItsOwn)
{
    service->change([](ServiceProtocol &protocol) {
        protocol.pages.insert("/frame", "<script>fetch('/report?in%20the%20frame:%20' + typeof window.webkit + '%20' + "
                                        "typeof window.qt)</script>");
    });
    serve("document.body.innerHTML = '<iframe src=\"/frame\"></iframe>';");
    presentSomething();
    waitForReport(u"in the frame: undefined undefined"_s);
}

TEST_F(HostilePageTest, AnotherOriginAfterANavigation)
{
    expectLogLine(ignored, 4);
    expectLogLine(u"LumenFold: editor window is not on the trusted origin; withholding screenshot."_s, 0);
    serveElsewhere("/trap", "addEventListener('message', event => report('heard: ' + event.data.type));"
                            "postMessage({type: 'loaded'}, '*');" +
                                exporting() +
                                "for (let count = 0; count < 2; ++count) {"
                                "  webkit.messageHandlers.lumenfoldLoaded.postMessage('loaded');"
                                "  webkit.messageHandlers.lumenfoldImage.postMessage('" +
                                dataURL() + "'); }setTimeout(() => report('trapped'), 500);");
    serve("location.href = elsewhere + '/trap';");
    presentSomething();
    waitForReport(u"trapped"_s);
    EXPECT_TRUE(waitFor([&] { return logLines().count(ignored) == 4; }));
    // The screenshot waits for the editor and is not given to whoever is there.
    presentSomething(u"2"_s);
    expectNoExport();
    EXPECT_FALSE(reports().contains(u"heard: hello"_s));
}

TEST_F(HostilePageTest, SaysThatItIsThereAndGoesElsewhereAtOnce)
{
    serveElsewhere("/trap", "addEventListener('message', event => report('heard: ' + event.data.type));"
                            "setTimeout(() => report('trapped'), 1000);");
    serve("postMessage({type: 'loaded'}, '*'); setTimeout(() => { location.href = elsewhere + '/trap'; }, 0);");
    present(noise({1500, 1200}));
    waitForReport(u"trapped"_s);
    EXPECT_FALSE(reports().contains(u"heard: hello"_s));
    // Whichever came first, the log says why.
    const QStringList troubles = logLines().filter(u"LumenFold: "_s);
    for (const QString &line : troubles) {
        EXPECT_TRUE(line == ignored || line.contains(u"failed to hand image to editor"_s) ||
                    line.contains(u"withholding screenshot"_s))
            << qPrintable(line);
    }
    for (const QString &line : QSet<QString>(troubles.begin(), troubles.end())) {
        expectLogLine(line, static_cast<int>(troubles.count(line)));
    }
}

TEST_F(HostilePageTest, LooksForThePictureWhereItIsFetched)
{
    serve(R"(
        const addresses = [];
        new PerformanceObserver(list => list.getEntries().forEach(entry => addresses.push(entry.name)))
            .observe({ entryTypes: ['resource'] });
        for (const name of ['open', 'send']) {
            const before = XMLHttpRequest.prototype[name];
            XMLHttpRequest.prototype[name] = function () { report('called ours'); return before.apply(this, arguments); };
        }
        const guess = 'lumenfold-handover:' + '0'.repeat(32);
        const asking = new Promise(done => {
            const request = new XMLHttpRequest();
            Reflect.apply(request.open, request, ['GET', guess]);
            request.onload = () => done('text ' + request.response);
            request.onerror = () => done('nothing');
            Reflect.apply(request.send, request, []);
        });
        const showing = new Promise(done => {
            const image = new Image();
            image.onload = () => done('picture');
            image.onerror = () => done('nothing');
            image.src = guess;
        });
        const frame = document.createElement('iframe');
        frame.src = guess;
        document.body.append(frame);
        addEventListener('message', async event => {
            if (event.data.type !== 'hello') return;
            report('got ' + event.data.src.length + ' ' + await asking + ' ' + await showing + ' ' +
                   await fetch(guess).then(() => 'answer', () => 'nothing'));
            report('addresses ' + addresses.filter(name => name.startsWith('lumenfold') && name !== guess).length);
            location.href = guess;
            setTimeout(() => report('still here'), 300);
        });
        window.postMessage({ type: 'loaded' }, '*');)");
    const Image picture = Image::fromPixels(noise({64, 48}));
    presentSomething();
    waitForReport(u"got %1 nothing nothing nothing"_s.arg(pngDataURL(picture.pngData().value()).size()));
    waitForReport(u"addresses 0"_s);
    waitForReport(u"still here"_s);
    EXPECT_FALSE(window()->showsNotice());
    // Only its own two calls.
    EXPECT_EQ(reports().count(u"called ours"_s), 2);
}

TEST_F(HostilePageTest, GoesAwayWhileThePictureIsOnItsWay)
{
    serveElsewhere("/trap", "addEventListener('message', event => report('heard: ' + event.data.type));"
                            "setTimeout(() => report('trapped'), 500);");
    // The program believes that the picture is wanted, and the page leaves in the same moment.
    serve("postMessage({type: 'loaded'}, '*');"
          "addEventListener('message', event => { if (event.data.type === 'loaded') location.href = elsewhere + "
          "'/trap'; });");
    present(noise({1500, 1200}));
    waitForReport(u"trapped"_s);
    EXPECT_FALSE(reports().contains(u"heard: hello"_s));
    // The editor itself gets it the next time that it is there.
    const QStringList troubles = logLines().filter(u"LumenFold: "_s);
    for (const QString &line : QSet<QString>(troubles.begin(), troubles.end())) {
        EXPECT_TRUE(line == ignored || line.contains(u"failed to hand image to editor"_s) ||
                    line.contains(u"withholding screenshot"_s))
            << qPrintable(line);
        expectLogLine(line, static_cast<int>(troubles.count(line)));
    }
}

TEST_F(HostilePageTest, ReplacesWhatTheBridgeIsMadeOf)
{
    serve(R"(
        const nothing = () => { report('called ours'); };
        try { window.webkit = { messageHandlers: {} }; } catch (error) {}
        try { window.webkit.messageHandlers.lumenfoldImage = nothing; } catch (error) {}
        try { window.webkit.messageHandlers.lumenfoldImage.postMessage = nothing; } catch (error) {}
        try { delete window.webkit; } catch (error) {}
        window.JSON = { parse: nothing, stringify: nothing };
        window.FileReader = nothing;
        window.CustomEvent = nothing;
        window.QWebChannel = nothing;
        Reflect.apply = nothing;
        Function.prototype.call = Function.prototype.apply = nothing;
        EventTarget.prototype.dispatchEvent = nothing;
        Array.prototype.join = Array.prototype.push = Array.prototype.shift = nothing;
        String.prototype.substr = nothing;
        Object.defineProperty(Object.prototype, 'accepted', { get: nothing });
        window.origin = 'https://evil.example';
        const blob = new Blob([Uint8Array.from(atob(')" +
          dataURL().mid(22) + R"('), sign => sign.charCodeAt(0))], { type: 'image/png' });
        addEventListener('message', event => {
            if (event.data.type === 'hello') window.postMessage({ type: 'image', blob }, '*');
        });
        window.postMessage({ type: 'loaded' }, '*');)");
    presentSomething();
    waitForExports(1);
    EXPECT_EQ(exported[0].pixels().convertToFormat(QImage::Format_RGB32), noise({16, 12}));
    EXPECT_FALSE(reports().contains(u"called ours"_s));
}

TEST_F(HostilePageTest, ListensWithItsOwnFirst)
{
    serve("for (const name of ['message']) addEventListener(name, event => event.stopImmediatePropagation(), true);" +
          exporting());
    presentSomething();
    // Ours was there before.
    waitForExports(1);
}

TEST_F(HostilePageTest, PostsAHundredMegabytes)
{
    serve("webkit.messageHandlers.lumenfoldImage.postMessage('x'.repeat(100e6));"
          "webkit.messageHandlers.lumenfoldImage.postMessage('x'.repeat(300e6));"
          "webkit.messageHandlers.lumenfoldImage.postMessage({length: 1e9});ready();"
          "addEventListener('keydown', () => " +
          exporting().chopped(1) + ");");
    presentSomething();
    waitForReport(u"ready"_s);
    expectNoExport();
    // Behind them everybody is heard.
    strike("e");
    waitForExports(1);
}

TEST_F(HostilePageTest, PostsAMillionTimes)
{
    // Once the page is there: until then the program's patience with a page counts.
    serve("addEventListener('load', () => setTimeout(() => {"
          "  for (let count = 0; count < 1e6; ++count) webkit.messageHandlers.lumenfoldImage.postMessage('x' + count);"
          "  ready(); }));addEventListener('keydown', () => " +
          exporting().chopped(1) + ");");
    presentSomething();
    waitForReport(u"ready"_s);
    EXPECT_TRUE(logLines().filter(u"LumenFold"_s).isEmpty());
    expectNoExport();
    strike("e");
    waitForExports(1);
}

TEST_F(HostilePageTest, PostsWhileTheWindowIsClosed)
{
    serve("addEventListener('message', () => { for (let count = 0; count < 100; ++count)"
          "  webkit.messageHandlers.lumenfoldImage.postMessage('y'.repeat(1e6)); });"
          "setInterval(() => postMessage('again', '*'), 1);onbeforeunload = () => 'stay';report('ready');");
    presentSomething();
    waitForReport(u"ready"_s);
    closeWindow();
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(waitFor([] { return renderers().isEmpty(); }, patience));
}

TEST_F(HostilePageTest, OpensWindowsInALoop)
{
    serve(R"(
        for (let count = 0; count < 20; ++count) {
            window.open('https://evil.example/' + count);
            const link = document.createElement('a');
            link.href = 'https://evil.example/';
            if (count % 2) link.target = '_blank';
            document.body.append(link);
            link.click();
        }
        report('opened');)");
    presentSomething();
    waitForReport(u"opened"_s);
    EXPECT_TRUE(staysTrue([&] { return workspace.openedAddresses.isEmpty(); }, 300ms));
    int windows = 0;
    for (const QWidget *each : QApplication::topLevelWidgets()) {
        windows += each->isVisible() ? 1 : 0;
    }
    EXPECT_EQ(windows, 1);
}

TEST_F(HostilePageTest, StartsDownloadsInALoop)
{
    serve(R"(
        for (let count = 0; count < 100; ++count) {
            const link = document.createElement('a');
            link.href = 'data:image/png;base64,QUJD';
            link.download = 'x';
            document.body.append(link);
            link.click();
        }
        report('offered');)");
    presentSomething();
    waitForReport(u"offered"_s);
    EXPECT_TRUE(waitFor([&] { return !panels.suggestedPaths.isEmpty(); }, patience));
    EXPECT_TRUE(staysTrue([&] { return panels.suggestedPaths.size() == 1; }, 500ms));
    panels.choose(std::nullopt);
    EXPECT_TRUE(staysTrue([&] { return panels.suggestedPaths.size() == 1; }, 300ms));
}

TEST_F(HostilePageTest, AsksForWhatOnlyTheUserCanPermit)
{
    serve(R"(
        navigator.mediaDevices.getUserMedia({ video: true }).then(() => report('camera: yes'), error => report('camera: ' + error.name));
        navigator.mediaDevices.getDisplayMedia({ video: true }).then(() => report('screen: yes'), error => report('screen: no'));
        navigator.geolocation.getCurrentPosition(() => report('place: yes'), error => report('place: ' + error.code));
        Notification.requestPermission().then(answer => report('notifications: ' + answer));
        navigator.clipboard.readText().then(text => report('clipboard: ' + text), error => report('clipboard: ' + error.name));
        document.documentElement.requestFullscreen().then(() => report('full screen: yes'), () => report('full screen: no'));)");
    presentSomething();
    for (const QString &answer : {u"camera: no"_s, u"screen: no"_s, u"place: 1"_s, u"notifications: denied"_s,
                                  u"clipboard: NotAllowedError"_s, u"full screen: no"_s}) {
        if (answer != u"camera: no"_s) {
            waitForReport(answer);
        }
    }
    EXPECT_TRUE(waitFor([&] { return !reports().filter(u"camera: "_s).isEmpty(); }, patience));
    EXPECT_FALSE(reports().contains(u"camera: yes"_s));
}

TEST_F(HostilePageTest, OpensDialogsInALoop)
{
    serve("for (let count = 0; count < 100; ++count) { alert(count); confirm(count); prompt(count); }"
          "report(confirm('really?') + ' ' + prompt('what?'));");
    presentSomething();
    waitForReport(u"false null"_s);
}

TEST_F(HostilePageTest, GoesToPlacesThatAreNotTheWebs)
{
    serve(R"(
        for (const address of ['file:///etc/passwd', 'data:text/html;base64,QUJD', 'chrome://gpu', 'qrc:/x', 'mailto:a@b.c',
                               'vnd.something:x', 'lumenfold-handover:x']) {
            const frame = document.createElement('iframe');
            frame.src = address;
            document.body.append(frame);
            try { location.href = address; } catch (error) {}
        }
        setTimeout(() => report('still here'), 500);)");
    presentSomething();
    waitForReport(u"still here"_s);
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
    panels.choose(std::nullopt);
}

} // namespace
} // namespace lumenfold::test

/// Cards that are dragged into programs that people use.
#include "tests/desktop/dragout/DragOutFixture.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>

namespace lumenfold::test {
namespace {

class OtherPrograms : public DragOut {
protected:
    [[nodiscard]] std::optional<QRect> windowTitled(const QString &title) const
    {
        for (const WindowInfo &window : windowsOnScreen(m_desktop->connection())) {
            if (window.title.contains(title)) {
                return window.frame;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] QString titleWith(const QString &part) const
    {
        const QList<WindowInfo> windows = windowsOnScreen(m_desktop->connection());
        const auto found =
            std::ranges::find_if(windows, [&](const WindowInfo &window) { return window.title.contains(part); });
        return found == windows.end() ? QString() : found->title;
    }
};

TEST_P(OtherPrograms, TheFileArrivesWholeInAFolder)
{
    const QString fileManager = QStandardPaths::findExecutable(QStringLiteral("pcmanfm"));
    if (fileManager.isEmpty()) {
        GTEST_SKIP() << "pcmanfm is not installed";
    }
    Desktop &desktop = startWithCard();
    QTemporaryDir parent;
    const QString name = QStringLiteral("droppedhere");
    const QString folder = parent.filePath(name);
    ASSERT_TRUE(QDir().mkpath(folder));
    Process program({.program = fileManager,
                     .arguments = {QStringLiteral("--no-desktop"), folder},
                     .environment = desktop.environment()});
    waitUntil("the file manager's window", [&] { return windowTitled(name).has_value(); });
    desktop.waitForStillPicture();
    const QRect window = *windowTitled(name);
    // Its files, right of the places and beneath the bars.
    const QPoint place(window.right() - window.width() / 4, window.center().y());

    takeHold();
    // What is dropped before the window has answered that it takes it, it does not get.
    for (int step = 0; step < 20; ++step) {
        desktop.pointer().moveTo(place + QPoint(step, 0));
        desktop.waitForStillPicture();
    }
    letGo();

    EXPECT_TRUE(waitFor([&] {
        const QStringList files = QDir(folder).entryList(QDir::Files);
        return files.size() == 1 && QFileInfo(folder + u'/' + files.first()).size() == m_png.size();
    }));
    const QStringList files = QDir(folder).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(files.first().startsWith(QStringLiteral("LumenFold Screenshot ")));
    QFile file(folder + u'/' + files.first());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), m_png);
}

/// Says in its title how it stands: when it is there, when it has agreed to take what is over it, and what it got.
const QByteArray pageThatTakesFiles = R"html(<!doctype html><meta charset="utf-8"><title>loading</title>
<style>html, body { margin: 0; height: 100%; background: white; }</style><body><script>
addEventListener('dragover', event => {
    event.preventDefault();
    event.dataTransfer.dropEffect = 'copy';
    document.title = 'agreed';
});
addEventListener('drop', async event => {
    event.preventDefault();
    const files = [];
    for (const file of event.dataTransfer.files) {
        const bytes = await file.arrayBuffer();
        const digest = new Uint8Array(await crypto.subtle.digest('SHA-256', bytes));
        const text = [...digest].map(byte => byte.toString(16).padStart(2, '0')).join('');
        files.push([file.name, file.type, bytes.byteLength, text].join('|'));
    }
    document.title = 'got ' + files.join(' and ');
});
document.title = 'there';
</script>)html";

/// Chromium with that page, and nothing but it.
ProcessOptions browserWith(const QString &page, QRect frame, const Desktop &desktop)
{
    const auto numbers = [](int first, int second) { return QStringLiteral("%1,%2").arg(first).arg(second); };
    return {.program = QStringLiteral("chromium"),
            .arguments =
                {
                    QStringLiteral("--app=") + QUrl::fromLocalFile(page).toString(),
                    QStringLiteral("--window-position=") + numbers(frame.x(), frame.y()),
                    QStringLiteral("--window-size=") + numbers(frame.width(), frame.height()),
                    QStringLiteral("--user-data-dir=") + desktop.folders().path("home/browser"),
                    // It refuses to be root's otherwise; the page is ours.
                    QStringLiteral("--no-sandbox"),
                    QStringLiteral("--test-type"),
                    QStringLiteral("--ozone-platform=x11"),
                    QStringLiteral("--disable-gpu"),
                    QStringLiteral("--disable-dev-shm-usage"),
                    QStringLiteral("--no-first-run"),
                    QStringLiteral("--no-default-browser-check"),
                    QStringLiteral("--password-store=basic"),
                    QStringLiteral("--disable-extensions"),
                    QStringLiteral("--disable-breakpad"),
                    // Nothing of it reaches a network.
                    QStringLiteral("--host-resolver-rules=MAP * ~NOTFOUND"),
                    QStringLiteral("--disable-background-networking"),
                    QStringLiteral("--disable-component-update"),
                    QStringLiteral("--disable-sync"),
                },
            .environment = desktop.environment(),
            .logFile = desktop.folders().path("browser.log")};
}

TEST_P(OtherPrograms, APageInABrowserGetsTheFile)
{
    if (QStandardPaths::findExecutable(QStringLiteral("chromium")).isEmpty()) {
        GTEST_SKIP() << "chromium is not installed";
    }
    Desktop &desktop = startWithCard();
    const QString page = desktop.folders().path("home/page.html");
    QFile file(page);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(pageThatTakesFiles) == pageThatTakesFiles.size());
    file.close();
    const QRect frame(600, 100, 500, 400);
    const Process browser(browserWith(page, frame, desktop));
    // A browser is slow to start on a machine that has other things to do.
    waitUntil(
        "the page", [&] { return windowTitled(QStringLiteral("there")).has_value(); }, std::chrono::seconds(60));
    desktop.waitForStillPicture();

    takeHold();
    // What is dropped before the page has agreed to take it, it does not get.
    EXPECT_TRUE(waitFor([&] {
        desktop.pointer().moveTo(frame.center() + QPoint(m_nudge = !m_nudge, 0));
        return windowTitled(QStringLiteral("agreed")).has_value();
    }));
    letGo();
    waitUntil("the page to get something", [&] { return windowTitled(QStringLiteral("got ")).has_value(); });

    const QString digest = QString::fromLatin1(QCryptographicHash::hash(m_png, QCryptographicHash::Sha256).toHex());
    const QString got = titleWith(QStringLiteral("got "));
    EXPECT_TRUE(got.startsWith(QStringLiteral("got LumenFold Screenshot "))) << qPrintable(got);
    EXPECT_TRUE(got.endsWith(QStringLiteral(".png|image/png|%1|%2").arg(m_png.size()).arg(digest)))
        << qPrintable(got) << " instead of " << m_png.size() << " bytes, " << qPrintable(digest);
}

INSTANTIATE_TEST_SUITE_P(On, OtherPrograms, ::testing::Values(DesktopSetting{"Openbox"}), DesktopSetting::nameOf);

} // namespace
} // namespace lumenfold::test

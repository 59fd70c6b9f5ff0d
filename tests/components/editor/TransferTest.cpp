/// Files that the page offers and asks for, and where its links lead.
#include "tests/components/editor/EditorDesk.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

class TransferTest : public EditorDesk {
protected:
    [[nodiscard]] static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Whole files that pages offer and that nobody has saved yet.
    [[nodiscard]] static QStringList downloads()
    {
        const QDir temporary(QDir::tempPath());
        QStringList found;
        const QStringList folders =
            temporary.entryList({QCoreApplication::applicationName() + u"-*"_s}, QDir::Dirs, QDir::Name);
        for (const QString &each : folders) {
            const QString path = temporary.filePath(each + u"/download"_s);
            if (QFile::exists(path)) {
                found.append(path);
            }
        }
        return found;
    }
};

TEST_F(TransferTest, EveryTypeOfDownloadIsOfferedWithItsExtension)
{
    presentAndWait(noise({8, 8}));
    struct Row {
        const char *key;
        const char *type;
        const char *extension;
    };
    for (const Row row : {Row{"1", "image/png", "png"}, Row{"2", "image/jpeg", "jpg"}, Row{"3", "image/jpg", "jpg"},
                          Row{"4", "image/webp", "webp"}, Row{"5", "image/gif", "gif"},
                          Row{"6", "image/svg+xml", "svg"}, Row{"7", "application/pdf", "pdf"},
                          Row{"8", "application/octet-stream", "png"}, Row{"9", "text/plain", "png"}}) {
        panels.suggestedPaths.clear();
        strike(row.key);
        ASSERT_TRUE(waitFor([&] { return panels.isAsking(); }, patience)) << row.type;
        const QFileInfo suggested(panels.suggestedPaths.first());
        EXPECT_TRUE(suggested.fileName().startsWith(u"LumenFold-"_s));
        EXPECT_EQ(suggested.suffix(), QString::fromUtf8(row.extension)) << row.type;
        EXPECT_EQ(suggested.path(), folder.path());
        const QString path = folder.filePath(QString::fromUtf8(row.key));
        panels.choose(path);
        EXPECT_TRUE(waitFor([&] { return contents(path) == QByteArray("a file of type ") + row.type; }, patience))
            << row.type;
    }
}

TEST_F(TransferTest, ALargeDownloadAndOneThatIsABlobAreWrittenWhole)
{
    serve(R"(
        const offer = (href, name) => {
            const link = document.createElement('a');
            link.href = href;
            link.download = name;
            document.body.append(link);
            link.click();
        };
        const large = 'x'.repeat(3000000);
        addEventListener('keydown', event => {
            if (event.key === 'l') offer('data:image/png;base64,' + btoa(large), '');
            if (event.key === 'b') offer(URL.createObjectURL(new Blob([large], { type: 'image/webp' })), 'my picture.webp');
        });
        ready();)");
    present(noise({8, 8}));
    waitForReport(u"ready"_s);
    strike("l");
    ASSERT_TRUE(waitFor([&] { return panels.isAsking(); }, patience));
    EXPECT_TRUE(panels.suggestedPaths.last().endsWith(u".png"_s)) << qPrintable(panels.suggestedPaths.last());
    panels.choose(folder.filePath(u"large"_s));
    EXPECT_TRUE(waitFor([&] { return contents(folder.filePath(u"large"_s)).size() == 3000000; }, patience));
    strike("b");
    ASSERT_TRUE(waitFor([&] { return panels.isAsking(); }, patience));
    EXPECT_EQ(panels.suggestedPaths.last(), folder.filePath(u"my picture.webp"_s));
    panels.choose(folder.filePath(u"blob"_s));
    EXPECT_TRUE(waitFor([&] { return contents(folder.filePath(u"blob"_s)).size() == 3000000; }, patience));
}

TEST_F(TransferTest, ADownloadThatIsThereOutlivesItsPage)
{
    serve(R"(
        addEventListener('keydown', event => {
            if (event.key !== 'l') {
                report('heard');
                return;
            }
            const link = document.createElement('a');
            link.href = URL.createObjectURL(new Blob(['x'.repeat(3000000)]));
            link.download = 'mine.bin';
            link.click();
        });
        ready();)");
    present(noise({8, 8}));
    waitForReport(u"ready"_s);
    const QStringList before = downloads();
    strike("l");
    ASSERT_TRUE(waitFor([&] { return panels.isAsking(); }, patience));
    ASSERT_TRUE(waitFor([&] { return downloads().size() > before.size(); }, patience));
    // It is there before the engine has told so.
    strike("h");
    waitForReport(u"heard"_s);
    // The page goes at once, the panel with the window a moment later.
    window()->close();
    panels.choose(folder.filePath(u"mine.bin"_s));
    EXPECT_TRUE(waitFor([&] { return contents(folder.filePath(u"mine.bin"_s)).size() == 3000000; }, patience));
    EXPECT_TRUE(waitFor([&] { return downloads() == before; }));
}

TEST_F(TransferTest, AFileThatIsChosenGoesToThePage)
{
    presentAndWait(noise({8, 8}));
    const QString path = folder.filePath(u"mine.png"_s);
    ASSERT_TRUE(noise({30, 20}).save(path));
    panels.filesToOpen = {path};
    strike("f");
    ASSERT_TRUE(waitFor([&] { return !told("opened").isEmpty(); }, patience));
    EXPECT_EQ(told("opened").first().queryItemValue(u"name"_s), u"mine.png"_s);
    EXPECT_EQ(told("opened").first().queryItemValue(u"width"_s), u"30"_s);
    EXPECT_EQ(panels.openPanels, QList{FilePanels::Count::one});
}

TEST_F(TransferTest, ThePageMayAskAgainAfterAPanelWasClosed)
{
    presentAndWait(noise({8, 8}));
    strike("f");
    ASSERT_TRUE(waitFor([&] { return panels.openPanels.size() == 1; }, patience));
    const QString path = folder.filePath(u"mine.png"_s);
    ASSERT_TRUE(noise({30, 20}).save(path));
    panels.filesToOpen = {path};
    strike("f");
    EXPECT_TRUE(waitFor([&] { return !told("opened").isEmpty(); }, patience));
}

TEST_F(TransferTest, LinksAndNewWindowsOpenInTheBrowser)
{
    serve(R"(
        document.body.innerHTML = '<a id="here" href="https://one.example/a?b=1#c">one</a>' +
                                  '<a id="blank" target="_blank" href="https://two.example/">two</a>';
        addEventListener('keydown', event => {
            if (event.key === 'a') document.getElementById('here').click();
            if (event.key === 'b') document.getElementById('blank').click();
            if (event.key === 'c') window.open('https://three.example/');
            if (event.key === 'd') window.open('data:image/gif;base64,QUJD');
        });
        ready();)");
    present(noise({8, 8}));
    waitForReport(u"ready"_s);
    const char *const keys[] = {"a", "b", "c"};
    for (int index = 0; index < 3; ++index) {
        strike(keys[index]);
        ASSERT_TRUE(waitFor([&] { return workspace.openedAddresses.size() == index + 1; }, patience)) << keys[index];
    }
    EXPECT_EQ(workspace.openedAddresses, (QList{QUrl(u"https://one.example/a?b=1#c"_s), QUrl(u"https://two.example/"_s),
                                                QUrl(u"https://three.example/"_s)}));
    strike("d");
    ASSERT_TRUE(waitFor([&] { return panels.isAsking(); }, patience));
    EXPECT_TRUE(panels.suggestedPaths.last().endsWith(u".gif"_s));
    // The page is still the same one.
    EXPECT_EQ(reports(), QStringList{u"ready"_s});
}

} // namespace
} // namespace lumenfold::test

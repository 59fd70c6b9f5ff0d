#include "editor/PageRequests.h"

#include "app/configuration/AppConfig.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeFilePanels.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/unit/FileSizeLimit.h"
#include "tests/support/unit/LogWatch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

class Offered : public OfferedFile {
public:
    struct Log {
        /// A path, or why there is none.
        tl::expected<QString, QString> fetched = tl::unexpected(u"no room"_s);
        bool isAskedFor = false;
        bool isGone = false;
    };
    Offered(Log &log, const QString &name, const QUrl &address = QUrl(u"blob:https://h/1"_s)) // NOLINT
        : m_log(log), m_name(name), m_address(address)
    {
    }
    ~Offered() override { m_log.isGone = true; }
    [[nodiscard]] QUrl address() const override { return m_address; }
    [[nodiscard]] QString mimeType() const override { return u"image/webp"_s; }
    [[nodiscard]] QString suggestedName() const override { return m_name; }
    void fetch(std::function<void(tl::expected<QString, QString> path)> done) override
    {
        m_log.isAskedFor = true;
        done(m_log.fetched);
    }

private:
    Log &m_log;
    QString m_name;
    QUrl m_address;
};

class PageRequestsTest : public ::testing::Test {
protected:
    PageRequestsTest()
    {
        files.pictures = folder.path();
        requests.setWindow(&window);
    }

    [[nodiscard]] bool navigate(const char *address, NavigationKind kind = NavigationKind::other)
    {
        return requests.allowsNavigation(QUrl(QString::fromUtf8(address)), kind);
    }
    [[nodiscard]] QByteArray contents(const QString &path) const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Its path.
    QString put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    }

    /// Outlives every panel, which may keep what is offered.
    Offered::Log log;
    QTemporaryDir folder;
    FakeUserDefaults defaults;
    FakeScreens screens;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    FakeWorkspace workspace;
    FakeFilePanels panels;
    QWidget window;
    PageRequests requests{{.config = config, .workspace = workspace, .filePanels = panels, .now = [] {
                               return QDateTime(QDate(2026, 3, 7), QTime(16, 5, 9), Qt::LocalTime);
                           }}};
};

TEST_F(PageRequestsTest, PagesMayBeGoneTo)
{
    EXPECT_TRUE(navigate("https://www.example.org/login"));
    EXPECT_TRUE(navigate("about:blank"));
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
}

TEST_F(PageRequestsTest, ALinkThatIsClickedOpensInTheBrowser)
{
    requests.noteInput();
    EXPECT_FALSE(navigate("https://elsewhere.example/a?b#c", NavigationKind::linkClicked));
    EXPECT_EQ(workspace.openedAddresses, QList{QUrl(u"https://elsewhere.example/a?b#c"_s)});
}

TEST_F(PageRequestsTest, APageThatClicksItsLinksItselfOpensNothing)
{
    EXPECT_FALSE(navigate("https://elsewhere.example/", NavigationKind::linkClicked));
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
    requests.noteInput();
    for (int count = 0; count < 1000; ++count) {
        EXPECT_FALSE(navigate("https://elsewhere.example/", NavigationKind::linkClicked));
        requests.openWindow(QUrl(u"https://elsewhere.example/"_s));
    }
    EXPECT_EQ(workspace.openedAddresses.size(), 1);
}

TEST_F(PageRequestsTest, OnlyAddressesForABrowserAreOpened)
{
    for (const char *address : {"file:///etc/passwd", "javascript:alert(1)", "smb://server/share",
                                "vnd.libreoffice.command:x", "blob:x", ""}) {
        requests.noteInput();
        EXPECT_FALSE(navigate(address, NavigationKind::linkClicked)) << address;
        requests.openWindow(QUrl(QString::fromUtf8(address)));
    }
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
    requests.openWindow(QUrl(u"mailto:someone@example.org"_s));
    EXPECT_EQ(workspace.openedAddresses.size(), 1);
}

TEST_F(PageRequestsTest, ADataAddressIsSavedWhereTheUserSays)
{
    EXPECT_FALSE(navigate("data:image/jpeg;base64,QUJD"));
    EXPECT_EQ(panels.suggestedPaths, QStringList{folder.filePath(u"LumenFold-2026-03-07-160509.jpg"_s)});
    const QString path = folder.filePath(u"chosen"_s);
    panels.choose(path);
    EXPECT_TRUE(waitFor([&] { return contents(path) == "ABC"; }));
}

TEST_F(PageRequestsTest, ANewWindowWithADataAddressIsADownloadToo)
{
    requests.openWindow(QUrl(u"data:application/pdf;base64,QUJD"_s));
    EXPECT_EQ(panels.suggestedPaths, QStringList{folder.filePath(u"LumenFold-2026-03-07-160509.pdf"_s)});
}

TEST_F(PageRequestsTest, ATypeThatIsNotKnownIsOfferedAsPng)
{
    EXPECT_FALSE(navigate("data:text/plain;base64,QUJD"));
    EXPECT_EQ(panels.suggestedPaths, QStringList{folder.filePath(u"LumenFold-2026-03-07-160509.png"_s)});
}

TEST_F(PageRequestsTest, WhatIsNoDownloadIsInTheLog)
{
    expectLogLine(u"LumenFold: malformed data URL from the editor download."_s);
    EXPECT_FALSE(navigate("data:text/plain,hello"));
    expectLogLine(u"LumenFold: could not decode the editor download payload."_s);
    EXPECT_FALSE(navigate("data:image/png;base64,!!!"));
    EXPECT_TRUE(panels.suggestedPaths.isEmpty());
}

TEST_F(PageRequestsTest, WhatCannotBeWrittenIsInTheLog)
{
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    panels.choose(u"/proc/nowhere/picture.png"_s);
    const QString beginning = u"LumenFold: failed to save the editor download: "_s;
    ASSERT_TRUE(waitFor([&] { return logLines().filter(beginning).size() == 1; }));
    expectLogLine(logLines().filter(beginning).first());
}

TEST_F(PageRequestsTest, OnePanelAtATime)
{
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    EXPECT_TRUE(requests.chooseFiles(false).isEmpty());
    EXPECT_EQ(panels.suggestedPaths.size(), 1);
    EXPECT_TRUE(panels.openPanels.isEmpty());
    panels.choose(folder.filePath(u"one"_s));
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    EXPECT_EQ(panels.suggestedPaths.size(), 2);
    ASSERT_TRUE(waitFor([&] { return contents(folder.filePath(u"one"_s)) == "ABC"; }));
}

TEST_F(PageRequestsTest, AfterANoThePageWaitsForTheUser)
{
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    panels.choose(std::nullopt);
    for (int count = 0; count < 1000; ++count) {
        EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
        EXPECT_TRUE(requests.chooseFiles(true).isEmpty());
    }
    EXPECT_EQ(panels.suggestedPaths.size(), 1);
    EXPECT_TRUE(panels.openPanels.isEmpty());
    requests.noteInput();
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    EXPECT_EQ(panels.suggestedPaths.size(), 2);
}

TEST_F(PageRequestsTest, OtherFilesKeepTheNameThatThePageHasForThem)
{
    requests.saveFile(std::make_unique<Offered>(log, u"../../.bashrc"_s));
    EXPECT_EQ(panels.suggestedPaths, QStringList{folder.filePath(u".bashrc"_s)});
    EXPECT_FALSE(log.isGone);
    expectLogLine(u"LumenFold: failed to save the editor download: no room"_s);
    panels.choose(folder.filePath(u"else"_s));
    EXPECT_TRUE(log.isGone);
    EXPECT_FALSE(QFile::exists(folder.filePath(u"else"_s)));
}

TEST_F(PageRequestsTest, AFileTakesThePlaceOfAnother)
{
    put(u"fetched"_s, "new, and longer");
    const QString path = put(u"chosen"_s, "old");
    log.fetched = folder.filePath(u"fetched"_s);
    requests.saveFile(std::make_unique<Offered>(log, u"a"_s));
    panels.choose(path);
    EXPECT_TRUE(waitFor([&] { return contents(path) == "new, and longer"; }));
    // What was fetched stays as long as it is being copied.
    EXPECT_TRUE(waitFor([&] { return log.isGone; }));
}

TEST_F(PageRequestsTest, AFileThatCannotBeWrittenLeavesTheOneInItsPlace)
{
    put(u"fetched"_s, QByteArray(1'000'000, 'x'));
    const QString path = put(u"chosen"_s, "old");
    log.fetched = folder.filePath(u"fetched"_s);
    requests.saveFile(std::make_unique<Offered>(log, u"a"_s));
    const QString beginning = u"LumenFold: failed to save the editor download: "_s;
    {
        const FileSizeLimit fullDisk(100'000);
        panels.choose(path);
        ASSERT_TRUE(waitFor([&] { return logLines().filter(beginning).size() == 1; }));
    }
    expectLogLine(logLines().filter(beginning).first());
    EXPECT_EQ(contents(path), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{u"chosen"_s, u"fetched"_s}));
}

TEST_F(PageRequestsTest, AFileWithoutANameIsNamedByItsType)
{
    requests.saveFile(std::make_unique<Offered>(log, QString()));
    panels.choose(std::nullopt);
    requests.noteInput();
    requests.saveFile(std::make_unique<Offered>(log, u"download.bin"_s, QUrl(u"data:"_s)));
    const QString path = folder.filePath(u"LumenFold-2026-03-07-160509.webp"_s);
    EXPECT_EQ(panels.suggestedPaths, (QStringList{path, path}));
}

TEST_F(PageRequestsTest, AFileThatIsNotWantedIsRefused)
{
    requests.saveFile(std::make_unique<Offered>(log, u"a"_s));
    panels.choose(std::nullopt);
    EXPECT_TRUE(log.isGone);
    EXPECT_FALSE(log.isAskedFor);
}

TEST_F(PageRequestsTest, ChosenFilesGoToThePage)
{
    panels.filesToOpen = {u"/home/someone/a.png"_s};
    EXPECT_EQ(requests.chooseFiles(false), panels.filesToOpen);
    EXPECT_EQ(requests.chooseFiles(true), panels.filesToOpen);
    EXPECT_EQ(panels.openPanels, (QList{FilePanels::Count::one, FilePanels::Count::several}));
    panels.filesToOpen.clear();
    EXPECT_TRUE(requests.chooseFiles(false).isEmpty());
}

TEST_F(PageRequestsTest, WithoutAWindowThereIsNoPanel)
{
    requests.setWindow(nullptr);
    EXPECT_FALSE(navigate("data:image/png;base64,QUJD"));
    EXPECT_TRUE(requests.chooseFiles(false).isEmpty());
    EXPECT_TRUE(panels.suggestedPaths.isEmpty());
}

} // namespace
} // namespace lumenfold::test

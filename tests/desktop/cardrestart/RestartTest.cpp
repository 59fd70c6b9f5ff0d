/// Cards survive the end of the program, however it ends.
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <random>
#include <thread>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

class Restart : public DesktopTest {
protected:
    Desktop &startHere(const DesktopOptions &options = {.size = cardFriendlyScreen})
    {
        Desktop &desktop = prepare(options);
        m_background = desktop.paintBackground(knownPicture(cardFriendlyScreen));
        desktop.pointer().moveTo({1000, 400});
        return desktop;
    }

    [[nodiscard]] QString cardPath(const QString &name) const
    {
        return m_desktop->folders().data() + u"/LumenFold/cards/"_s + name;
    }

    void writeCardFile(const QString &name, const QByteArray &bytes)
    {
        QDir().mkpath(cardPath(QString()));
        QFile file(cardPath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    [[nodiscard]] QJsonArray manifest() const
    {
        QFile file(cardPath(u"manifest.json"_s));
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).array() : QJsonArray();
    }

    QImage m_background;
};

TEST_F(Restart, BringsTheCardsBack)
{
    Desktop &desktop = startHere();
    desktop.startProgram();
    for (int count = 1; count <= 2; ++count) {
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        desktop.waitForPanels(count);
    }
    const QImage before = desktop.waitForStillPicture();
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    const QJsonArray cards = manifest();
    ASSERT_EQ(cards.size(), 2);
    for (const QJsonValue card : cards) {
        const QString id = card[u"id"_s].toString();
        EXPECT_EQ(card[u"editorSourceId"_s].toString(), id);
        EXPECT_FALSE(card[u"isPinned"_s].toBool(true));
        EXPECT_TRUE(samePicture(QImage(cardPath(id + u".png"_s)), m_background));
        EXPECT_TRUE(samePicture(QImage(cardPath(id + u"-source.png"_s)), m_background));
    }

    desktop.startProgram();
    const QList<WindowInfo> panels = desktop.waitForPanels(2);
    EXPECT_EQ(panels[0].frame, CardColumn().slot(0));
    EXPECT_EQ(panels[1].frame, CardColumn().slot(1));
    EXPECT_TRUE(waitFor([&] { return differingPixels(desktop.waitForStillPicture(), before) == 0; }));
    EXPECT_TRUE(samePicture(desktop.waitForStillPicture(), before));
}

TEST_F(Restart, KeepsACardThatWasTakenJustBeforeTheEnd)
{
    Desktop &desktop = startHere();
    desktop.startProgram();
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    const QJsonArray cards = manifest();
    ASSERT_EQ(cards.size(), 1);
    EXPECT_TRUE(samePicture(QImage(cardPath(cards[0][u"id"_s].toString() + u".png"_s)), m_background));
}

TEST_F(Restart, LeavesOutWhatItCannotRead)
{
    Desktop &desktop = startHere();
    QByteArray png;
    {
        desktop.startProgram();
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        png = desktop.clipboardPng();
        desktop.quitProgram();
    }
    writeCardFile(u"good.png"_s, png);
    writeCardFile(u"pinned.png"_s, png);
    writeCardFile(u"far.png"_s, png);
    writeCardFile(u"cut.png"_s, png.chopped(100));
    ASSERT_TRUE(QFile::link(u"nowhere"_s, cardPath(u"link.png"_s)));
    writeCardFile(u"manifest.json"_s, R"([{"id":"good","isPinned":false},{"id":"cut","isPinned":false},
        {"id":"../../../home/x","isPinned":false},{"id":"link","isPinned":false},{"id":"missing","isPinned":true},
        {"id":"far","isPinned":true,"frame":[[1e300,-1e300],[1e308,1e308]]},
        {"id":"pinned","isPinned":true,"frame":[[400,300],[404,344]]}])");
    desktop.startProgram();
    EXPECT_TRUE(waitFor([&] { return manifest().size() == 3; }));
    EXPECT_TRUE(waitFor([&] {
        const QList<WindowInfo> panels = desktop.panels();
        return std::ranges::any_of(panels, [](const WindowInfo &panel) {
            return panel.frame == QRect(400, cardFriendlyScreen.height() - 300 - 344, 404, 344);
        });
    }));
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_TRUE(waitFor([&] { return manifest().size() == 4; }));
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

TEST_F(Restart, KeepsTheCardsOfAProgramThatWasKilled)
{
    std::random_device device;
    const unsigned seed = device();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Desktop &desktop = startHere();
    for (int round = 0; round < 5; ++round) {
        desktop.startProgram();
        const qsizetype known = manifest().size();
        desktop.waitForPanels(static_cast<int>(known));
        desktop.press("Super+Alt+1");
        if (round % 2 == 0) {
            desktop.waitForClipboard();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 300));
        desktop.program().sendSignal(SIGKILL);
        ASSERT_EQ(desktop.program().waitForExit(), (Process::Exit{.status = -1, .signal = SIGKILL}));
        const QJsonArray cards = manifest();
        EXPECT_GE(cards.size(), known);
        for (const QJsonValue card : cards) {
            const QString id = card[u"id"_s].toString();
            ASSERT_TRUE(samePicture(QImage(cardPath(id + u".png"_s)), m_background));
            ASSERT_TRUE(samePicture(QImage(cardPath(id + u"-source.png"_s)), m_background));
        }
    }
    desktop.startProgram();
    desktop.waitForPanels(static_cast<int>(manifest().size()));
}

} // namespace
} // namespace lumenfold::test

/// At whatever moment a program is killed, each card that its list on disk names is there, with every pixel.
#include "tests/desktop/cardrestart/KeeperPictures.h"
#include "tests/support/desktop/Process.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int kills = 300;
/// The moments lie between nothing and this much later at first. How long the program takes to begin depends on the
/// machine and on what else it does, so the moments follow: later when nothing had changed, earlier when something had.
constexpr double firstLatestKill = 150'000;
constexpr double longestLatestKill = 3'000'000;
constexpr double whenTooEarly = 1.1;
constexpr double whenLateEnough = 0.9;

class KilledCardKeeper : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Reads what is on disk with the toolkit's own readers, as somebody else would.
    [[nodiscard]] QJsonArray manifest() const
    {
        QFile file(path(u"manifest.json"_s));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
        EXPECT_TRUE(document.isArray());
        return document.array();
    }

    void checkCards()
    {
        for (const QJsonValue entry : manifest()) {
            const QString id = entry[u"id"_s].toString();
            ASSERT_FALSE(id.isEmpty());
            const QString sourceId = entry[u"editorSourceId"_s].toString();
            ASSERT_TRUE(isKeeperPicture(QImage(path(id + u".png"_s)), sourceId)) << qPrintable(id);
            ASSERT_TRUE(isKeeperPicture(QImage(path(id + u"-source.png"_s)), sourceId)) << qPrintable(id);
            ++m_cardsChecked;
        }
    }

    QTemporaryDir m_folder;
    int m_cardsChecked = 0;
};

TEST_F(KilledCardKeeper, keepsEveryCardThatItsListNames)
{
    const char *const asked = std::getenv("LUMENFOLD_TEST_SEED");
    const unsigned seed = asked ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : std::random_device()();
    std::printf("LUMENFOLD_TEST_SEED=%u\n", seed);
    std::mt19937 random(seed);
    int killedWhileWriting = 0;
    int leftOver = 0;
    QByteArray listBefore;
    double latestKill = firstLatestKill;
    for (int kill = 0; kill < kills; ++kill) {
        Process keeper({.program = QStringLiteral(LUMENFOLD_CARD_KEEPER),
                        .arguments = {m_folder.path(), QString::number(random())},
                        .logFile = path(u"log"_s)});
        std::this_thread::sleep_for(std::chrono::microseconds(random() % static_cast<unsigned>(latestKill)));
        keeper.sendSignal(SIGKILL);
        ASSERT_EQ(keeper.waitForExit(), (Process::Exit{.status = -1, .signal = SIGKILL}))
            << "kill " << kill << ": " << keeper.log().constData();
        ASSERT_NO_FATAL_FAILURE(checkCards()) << "kill " << kill;
        leftOver += QFile::exists(path(u".writing.tmp"_s)) ? 1 : 0;
        const QByteArray list = QJsonDocument(manifest()).toJson();
        const bool wasWriting = list != listBefore;
        killedWhileWriting += wasWriting ? 1 : 0;
        latestKill = std::clamp(latestKill * (wasWriting ? whenLateEnough : whenTooEarly), firstLatestKill / 2,
                                longestLatestKill);
        listBefore = list;
    }
    std::printf("%d cards checked; %d kills came while cards changed, %d in the middle of a file\n", m_cardsChecked,
                killedWhileWriting, leftOver);
    // Else the moments were badly chosen and nothing was tried.
    EXPECT_GT(m_cardsChecked, kills);
    EXPECT_GT(killedWhileWriting, kills / 4);

    // Nothing stays for ever that belongs to no card.
    {
        Process keeper({.program = QStringLiteral(LUMENFOLD_CARD_KEEPER),
                        .arguments = {m_folder.path(), QString::number(random())}});
        const QByteArray list = listBefore;
        ASSERT_TRUE(waitFor([&] { return QJsonDocument(manifest()).toJson() != list; }));
        keeper.sendSignal(SIGKILL);
        ASSERT_TRUE(keeper.waitForExit());
    }
    EXPECT_LT(QDir(m_folder.path()).entryList({u"*.png"_s}, QDir::Files).size(), 100);
}

} // namespace
} // namespace lumenfold::test

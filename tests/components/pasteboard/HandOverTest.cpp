/// What is left of the clipboard when the program that put the picture there ends.
#include "tests/components/pasteboard/ClipboardManager.h"
#include "tests/components/pasteboard/Noise.h"
#include "tests/support/desktop/Clipboard.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/XServer.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <unistd.h>

namespace lumenfold::test {
namespace {

using std::chrono::steady_clock;

class HandOver : public ::testing::Test {
protected:
    /// Starts the owner with a picture of this size and lets it end when it has the clipboard.
    std::optional<Process::Exit> letAnOwnerComeAndGo(const QImage &picture, ClipboardManager *manager = nullptr)
    {
        m_picture = picture;
        const QString file = m_folder.filePath(QStringLiteral("picture.png"));
        EXPECT_TRUE(m_picture.save(file, "PNG", 100));
        m_owner.emplace(ProcessOptions{.program = QStringLiteral(PASTEBOARD_OWNER),
                                       .arguments = {file},
                                       .environment = m_server.clientEnvironment(),
                                       .logFile = m_folder.filePath(QStringLiteral("log"))});
        // Its input is empty, so it ends as soon as its event loop has begun.
        const auto start = steady_clock::now();
        std::optional<Process::Exit> exit;
        EXPECT_TRUE(waitFor([&] {
            if (manager) {
                manager->work();
            }
            exit = m_owner->waitForExit(std::chrono::milliseconds(1));
            return exit.has_value();
        }));
        m_life = steady_clock::now() - start;
        return exit;
    }

    XServer m_server;
    QTemporaryDir m_folder;
    QImage m_picture;
    std::optional<Process> m_owner;
    steady_clock::duration m_life{};
};

constexpr Process::Exit success{.status = 0, .signal = 0};

TEST_F(HandOver, contentsGoToTheClipboardManager)
{
    ClipboardManager manager(m_server.display(), ClipboardManager::Manners::diligent);

    EXPECT_EQ(letAnOwnerComeAndGo(photographLike({3840, 2160}), &manager), success);

    EXPECT_EQ(manager.saveRequests(), 1);
    EXPECT_TRUE(manager.offered().contains(QStringLiteral("image/png")));
    EXPECT_EQ(differingPixels(QImage::fromData(manager.saved(), "PNG"), m_picture), 0);
    EXPECT_EQ(m_owner->log(), "ready\n");
}

TEST_F(HandOver, aPictureLargerThanTheServersLargestRequestDoesNotKeepTheProgram)
{
    ClipboardManager manager(m_server.display(), ClipboardManager::Manners::diligent);

    EXPECT_EQ(letAnOwnerComeAndGo(noise({3840, 2160}), &manager), success);

    EXPECT_LT(m_life, std::chrono::seconds(5));
    EXPECT_EQ(m_owner->log(), "ready\n");
}

TEST_F(HandOver, withoutAClipboardManagerTheProgramEndsAtOnce)
{
    EXPECT_EQ(letAnOwnerComeAndGo(photographLike({640, 480})), success);

    EXPECT_LT(m_life, std::chrono::seconds(3));
    EXPECT_EQ(m_owner->log(), "ready\n");
    EXPECT_EQ(ClipboardReader(m_server.display()).owner(), XCB_NONE);
}

TEST_F(HandOver, aDeafClipboardManagerDoesNotKeepTheProgramForEver)
{
    ClipboardManager manager(m_server.display(), ClipboardManager::Manners::deaf);

    EXPECT_EQ(letAnOwnerComeAndGo(photographLike({640, 480}), &manager), success);

    EXPECT_LT(m_life, std::chrono::seconds(8));
}

} // namespace
} // namespace lumenfold::test

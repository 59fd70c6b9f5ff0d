/// However the program is told to end, the list of cards is written.
#include "tests/desktop/statusarea/SessionManager.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/StatusNotifierHost.h"

#include <QFile>
#include <QFileInfo>

#include <csignal>

namespace lumenfold::test {
namespace {

class Quitting : public DesktopTest {
protected:
    /// One card stands, and its list is not on the disk.
    void captureAndLoseTheList(Desktop &desktop)
    {
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        desktop.waitForPanels(1);
        waitUntil("the list of cards", [this] { return QFileInfo::exists(list()); });
        // The writing thread may still be at it.
        waitUntil("the pictures of the card",
                  [&] { return QDir(QFileInfo(list()).path()).entryList({QStringLiteral("*.png")}).size() >= 1; });
        m_before = contents();
        ASSERT_TRUE(QFile::remove(list()));
    }

    [[nodiscard]] QString list() const
    {
        return m_desktop->folders().data() + QStringLiteral("/LumenFold/cards/manifest.json");
    }

    [[nodiscard]] QByteArray contents() const
    {
        QFile file(list());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void expectTheListIsBack()
    {
        EXPECT_FALSE(m_before.isEmpty());
        EXPECT_EQ(contents(), m_before);
    }

    QByteArray m_before;
};

TEST_F(Quitting, FromTheMenu)
{
    Desktop &desktop = prepare();
    StatusNotifierHost host(desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));
    desktop.startProgram();
    captureAndLoseTheList(desktop);
    host.choose(QStringLiteral("Quit"));
    EXPECT_EQ(desktop.program().waitForExit(), Process::Exit{.status = 0});
    expectTheListIsBack();
}

TEST_F(Quitting, BySignal)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        Desktop &desktop = start();
        captureAndLoseTheList(desktop);
        desktop.program().sendSignal(signal);
        EXPECT_EQ(desktop.program().waitForExit(), Process::Exit{.status = 0});
        expectTheListIsBack();
    }
}

TEST_F(Quitting, WithTheSession)
{
    SessionManager manager;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("SESSION_MANAGER"), manager.address());
    Desktop &desktop = start({.environment = environment});
    ASSERT_EQ(manager.clients(), 1);
    captureAndLoseTheList(desktop);
    manager.saveEverybody();
    EXPECT_TRUE(waitFor([this] { return contents() == m_before; }));
    EXPECT_TRUE(desktop.isProgramRunning());
    manager.endSession();
    EXPECT_EQ(desktop.program().waitForExit(), Process::Exit{.status = 0});
    expectTheListIsBack();
    EXPECT_TRUE(waitFor([&] { return manager.clients() == 0; }));
}

} // namespace
} // namespace lumenfold::test

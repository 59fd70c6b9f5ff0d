#include "platform/workspace/QtWorkspace.h"

#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

/// Programs in PATH that write down how they were called.
class WorkspaceTest : public ::testing::Test {
protected:
    WorkspaceTest() { qputenv("PATH", QFile::encodeName(m_folder.path())); }
    ~WorkspaceTest() override
    {
        qputenv("PATH", m_path);
        qputenv("XDG_CURRENT_DESKTOP", m_desktop);
    }

    /// `before` runs in the script before it writes.
    void install(const QString &program, const QByteArray &before = {})
    {
        QFile script(m_folder.filePath(program));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\n" + before + "\necho \"${0##*/} $*\" >>'" + QFile::encodeName(callsFile()) + "'\n");
        script.close();
        ASSERT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }

    [[nodiscard]] QString callsFile() const { return m_folder.filePath(QStringLiteral("calls")); }

    [[nodiscard]] QByteArray calls() const
    {
        QFile file(callsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const QByteArray m_path = qgetenv("PATH");
    const QByteArray m_desktop = qgetenv("XDG_CURRENT_DESKTOP");
    QTemporaryDir m_folder;
    QtWorkspace m_workspace;
};

const QUrl privacyPage(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));

TEST_F(WorkspaceTest, AddressesGoToTheDesktopsOpenerUnchanged)
{
    install(QStringLiteral("xdg-open"));
    m_workspace.open(QUrl(QStringLiteral("https://www.example/studio?src=https://x/a.png%3Fq%26r&id=t 1#f")));
    EXPECT_TRUE(waitFor([this] { return !calls().isEmpty(); }));
    EXPECT_EQ(calls(), "xdg-open https://www.example/studio?src=https://x/a.png%3Fq%26r&id=t%201#f\n");
}

TEST_F(WorkspaceTest, NobodyWaitsForTheOpener)
{
    install(QStringLiteral("xdg-open"), "/bin/sleep 2");
    QElapsedTimer elapsed;
    elapsed.start();
    m_workspace.open(QUrl(QStringLiteral("https://www.example/")));
    EXPECT_LT(elapsed.elapsed(), 1000);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(WorkspaceTest, WithoutAnOpenerTheLogSaysSoAndKeepsTheSecret)
{
    expectLogLine(QStringLiteral("LumenFold: cannot start xdg-open for https://www.example/integration/electron"));
    m_workspace.open(QUrl(QStringLiteral("https://u:p@www.example/integration/electron?apiKey=secret#secret")));
}

TEST_F(WorkspaceTest, WhatIsNoAddressIsNotOpened)
{
    install(QStringLiteral("xdg-open"));
    expectLogLine(QStringLiteral("LumenFold: not an address to open: "));
    expectLogLine(QStringLiteral("LumenFold: not an address to open: --help"));
    m_workspace.open(QUrl());
    m_workspace.open(QUrl(QStringLiteral("--help")));
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(WorkspaceTest, TheSettingsAddressOpensTheDesktopsPrivacyPanel)
{
    install(QStringLiteral("xdg-open"));
    install(QStringLiteral("gnome-control-center"));
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    m_workspace.open(privacyPage);
    EXPECT_TRUE(waitFor([this] { return !calls().isEmpty(); }));
    EXPECT_EQ(calls(), "gnome-control-center privacy\n");
}

TEST_F(WorkspaceTest, WhereThereIsNoPrivacyPanelTheLogSaysSo)
{
    install(QStringLiteral("xdg-open"));
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    expectLogLine(QStringLiteral("LumenFold: this desktop has no privacy settings to open"));
    m_workspace.open(privacyPage);
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(WorkspaceTest, ThePolicyIsRemembered)
{
    EXPECT_EQ(m_workspace.activationPolicy(), ActivationPolicy::regular);
    m_workspace.setActivationPolicy(ActivationPolicy::accessory);
    EXPECT_EQ(m_workspace.activationPolicy(), ActivationPolicy::accessory);
}

TEST_F(WorkspaceTest, ActivatingBringsOrdinaryWindowsToTheFront)
{
    QWidget window;
    window.resize(200, 100);
    window.show();
    ASSERT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
    TestWindow other(guiTestServer());
    other.focus();
    ASSERT_TRUE(waitFor([&] { return !window.isActiveWindow(); }));
    m_workspace.activateIgnoringOtherApps();
    EXPECT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
}

TEST_F(WorkspaceTest, ActivatingWithoutAWindowAndBeepingDoNothingBad)
{
    m_workspace.activateIgnoringOtherApps();
    m_workspace.beep();
}

TEST_F(WorkspaceTest, TerminatingEndsTheEventLoopLaterWhateverTheWindowsSay)
{
    class Stubborn : public QWidget {
        void closeEvent(QCloseEvent *event) override { event->ignore(); }
    };
    Stubborn window;
    window.show();
    bool hasReturned = false;
    bool hasEnded = false;
    QTimer::singleShot(0, [&] {
        m_workspace.terminate();
        hasReturned = true;
    });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &window, [&] {
        EXPECT_TRUE(hasReturned);
        hasEnded = true;
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_TRUE(hasEnded);
}

} // namespace
} // namespace lumenfold::test

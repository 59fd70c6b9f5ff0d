/// The Debian package of the release build: what is in it, that its checkers find nothing, and that it comes and goes
/// without a trace.
#include "tests/support/desktop/DesktopTest.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <stdexcept>
#include <unistd.h>

namespace lumenfold::test {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

/// lintian and cpack take their time on a machine that has other things to do.
constexpr std::chrono::minutes patience{4};

struct Outcome {
    int status = -1;
    QString text;
};

class PackageTest : public DesktopTest {
protected:
    static void SetUpTestSuite()
    {
        s_folder = new QTemporaryDir;
        // <build>/bin/lumenfold
        const QString build = QFileInfo(QFileInfo(programPath()).path()).path();
        const Outcome made =
            call(QStringLiteral("cpack"), {QStringLiteral("--config"), build + QStringLiteral("/CPackConfig.cmake"),
                                           QStringLiteral("-B"), s_folder->path()});
        const QStringList packages = QDir(s_folder->path()).entryList({QStringLiteral("lumenfold_*.deb")});
        if (made.status != 0 || packages.size() != 1) {
            throw std::runtime_error("no package can be made: " + made.text.toStdString());
        }
        s_package = s_folder->filePath(packages.first());
    }

    static void TearDownTestSuite()
    {
        delete s_folder;
        s_folder = nullptr;
    }

    [[nodiscard]] static Outcome call(const QString &program, const QStringList &arguments)
    {
        const QTemporaryDir folder;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // Where dpkg looks for what only root has in its path.
        environment.insert(QStringLiteral("PATH"), environment.value(QStringLiteral("PATH")) +
                                                       QStringLiteral(":/usr/local/sbin:/usr/sbin:/sbin"));
        Process process({.program = program,
                         .arguments = arguments,
                         .environment = environment,
                         .logFile = folder.filePath(QStringLiteral("log"))});
        const auto exit = process.waitForExit(patience);
        return {.status = exit && exit->signal == 0 ? exit->status : -1, .text = QString::fromUtf8(process.log())};
    }

    /// What a checker has to say; nothing when it has nothing.
    [[nodiscard]] static QString complaints(const QString &program, const QStringList &arguments)
    {
        const Outcome outcome = call(program, arguments);
        return outcome.status == 0 ? QString() : QStringLiteral("status %1: ").arg(outcome.status) + outcome.text;
    }

    /// dpkg on a system of its own, which begins empty. Nobody need be root for that, but dpkg has to believe it.
    [[nodiscard]] static Outcome dpkg(const QString &root, const QStringList &arguments)
    {
        QStringList all{QStringLiteral("--root=") + root,
                        QStringLiteral("--log=") + root + QStringLiteral("/var/dpkg.log"),
                        QStringLiteral("--force-depends")};
        all += arguments;
        if (geteuid() == 0) {
            return call(QStringLiteral("dpkg"), all);
        }
        return call(QStringLiteral("fakeroot"), QStringList{QStringLiteral("dpkg")} + all);
    }

    static void makeEmptySystem(const QString &root)
    {
        const QDir folder(root);
        ASSERT_TRUE(folder.mkpath(QStringLiteral("var/lib/dpkg/info")) &&
                    folder.mkpath(QStringLiteral("var/lib/dpkg/updates")));
        QFile status(folder.filePath(QStringLiteral("var/lib/dpkg/status")));
        ASSERT_TRUE(status.open(QIODevice::WriteOnly));
    }

    /// Files and folders below the root, without what dpkg keeps for itself.
    [[nodiscard]] static QStringList contents(const QString &root)
    {
        QStringList all;
        QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = QDir(root).relativeFilePath(it.next());
            if (!path.startsWith(QStringLiteral("var"))) {
                all.append(path);
            }
        }
        all.sort();
        return all;
    }

    static inline QTemporaryDir *s_folder = nullptr;
    static inline QString s_package;
};

TEST_F(PackageTest, HoldsWhatASystemNeeds)
{
    const QTemporaryDir unpacked;
    ASSERT_EQ(call(QStringLiteral("dpkg-deb"), {QStringLiteral("-x"), s_package, unpacked.path()}).status, 0);
    const QStringList there = contents(unpacked.path());
    QStringList wanted{
        QStringLiteral("usr/bin/lumenfold"),
        QStringLiteral("usr/lib/lumenfold/lumenfold_editor.so"),
        QStringLiteral("usr/lib/lumenfold/lumenfold_keyring.so"),
        QStringLiteral("usr/lib/lumenfold/lumenfold_webprocess.so"),
        QStringLiteral("usr/share/applications/org.lumenfold.LumenFold.desktop"),
        QStringLiteral("usr/share/dbus-1/services/org.lumenfold.LumenFold.service"),
        QStringLiteral("usr/share/doc/lumenfold/changelog.gz"),
        QStringLiteral("usr/share/doc/lumenfold/copyright"),
        QStringLiteral("usr/share/icons/hicolor/scalable/apps/org.lumenfold.LumenFold.svg"),
        QStringLiteral("usr/share/icons/hicolor/symbolic/apps/org.lumenfold.LumenFold-symbolic.svg"),
        QStringLiteral("usr/share/man/man1/lumenfold.1.gz"),
        QStringLiteral("usr/share/metainfo/org.lumenfold.LumenFold.metainfo.xml"),
    };
    for (const int size : {16, 22, 24, 32, 48, 64, 96, 128, 256, 512}) {
        const QString icon = QStringLiteral("usr/share/icons/hicolor/%1x%1/apps/org.lumenfold.LumenFold.png").arg(size);
        wanted.append(icon);
        EXPECT_EQ(QImage(QDir(unpacked.path()).filePath(icon)).size(), QSize(size, size)) << size;
    }
    EXPECT_THAT(there, IsSupersetOf(wanted));
    // Nothing starts by itself, nor is anything of the tests in it.
    EXPECT_THAT(there.filter(QRegularExpression(QStringLiteral("autostart|double|^etc|test"))), IsEmpty());

    QFile service(unpacked.filePath(QStringLiteral("usr/share/dbus-1/services/org.lumenfold.LumenFold.service")));
    ASSERT_TRUE(service.open(QIODevice::ReadOnly));
    EXPECT_EQ(service.readAll(), "[D-BUS Service]\nName=org.lumenfold.LumenFold\nExec=/usr/bin/lumenfold\n");
}

TEST_F(PackageTest, HasTheVersionOfTheProgram)
{
    const QString version =
        call(QStringLiteral("dpkg-deb"), {QStringLiteral("-f"), s_package, QStringLiteral("Version")}).text.trimmed();
    const QTemporaryDir unpacked;
    ASSERT_EQ(call(QStringLiteral("dpkg-deb"), {QStringLiteral("-x"), s_package, unpacked.path()}).status, 0);
    const QString changes =
        call(QStringLiteral("zcat"), {unpacked.filePath(QStringLiteral("usr/share/doc/lumenfold/changelog.gz"))}).text;
    EXPECT_TRUE(changes.startsWith(QStringLiteral("lumenfold (%1) ").arg(version))) << qPrintable(changes.left(100));
    const QString manual =
        call(QStringLiteral("zcat"), {unpacked.filePath(QStringLiteral("usr/share/man/man1/lumenfold.1.gz"))}).text;
    EXPECT_TRUE(manual.contains(QStringLiteral("\"LumenFold %1\"").arg(version)));
}

TEST_F(PackageTest, NoCheckerFindsAnything)
{
    const QTemporaryDir unpacked;
    ASSERT_EQ(call(QStringLiteral("dpkg-deb"), {QStringLiteral("-x"), s_package, unpacked.path()}).status, 0);
    const QDir share(unpacked.filePath(QStringLiteral("usr/share")));
    EXPECT_EQ(complaints(QStringLiteral("desktop-file-validate"),
                         {share.filePath(QStringLiteral("applications/org.lumenfold.LumenFold.desktop"))}),
              QString());
    EXPECT_EQ(complaints(QStringLiteral("appstreamcli"),
                         {QStringLiteral("validate"), QStringLiteral("--no-net"),
                          share.filePath(QStringLiteral("metainfo/org.lumenfold.LumenFold.metainfo.xml"))}),
              QString());
    EXPECT_EQ(
        complaints(QStringLiteral("lintian"), {QStringLiteral("--fail-on"), QStringLiteral("error,warning"),
                                               QStringLiteral("--tag-display-limit"), QStringLiteral("0"), s_package}),
        QString());
}

TEST_F(PackageTest, IsInstalledRunsAndGoesWithoutATrace)
{
    const QTemporaryDir root;
    makeEmptySystem(root.path());
    const Outcome installed = dpkg(root.path(), {QStringLiteral("--install"), s_package});
    ASSERT_EQ(installed.status, 0) << qPrintable(installed.text);
    const QString program = root.filePath(QStringLiteral("usr/bin/lumenfold"));
    ASSERT_THAT(contents(root.path()), Contains(QStringLiteral("usr/bin/lumenfold")));

    const QByteArray before = qgetenv("LUMENFOLD_BINARY");
    qputenv("LUMENFOLD_BINARY", QFile::encodeName(program));
    Desktop &desktop = start();
    if (before.isEmpty()) {
        qunsetenv("LUMENFOLD_BINARY");
    } else {
        qputenv("LUMENFOLD_BINARY", before);
    }
    EXPECT_EQ(QFileInfo(QStringLiteral("/proc/%1/exe").arg(desktop.program().pid())).symLinkTarget(), program);
    // Its modules are the installed ones.
    const QByteArray keyring =
        QFile::encodeName(root.filePath(QStringLiteral("usr/lib/lumenfold/lumenfold_keyring.so")));
    EXPECT_TRUE(waitFor([&] {
        QFile maps(QStringLiteral("/proc/%1/maps").arg(desktop.program().pid()));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(keyring);
    }));
    // And its resources are with it: a card is on the screen.
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_FALSE(desktop.clipboardPicture().isNull());
    desktop.waitForPanels(1);
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});

    const Outcome removed = dpkg(root.path(), {QStringLiteral("--purge"), QStringLiteral("lumenfold")});
    EXPECT_EQ(removed.status, 0) << qPrintable(removed.text);
    EXPECT_THAT(contents(root.path()), IsEmpty());
}

} // namespace
} // namespace lumenfold::test

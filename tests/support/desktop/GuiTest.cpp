#include "tests/support/desktop/GuiTest.h"

#include "tests/support/unit/LogWatch.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

XServer *theServer = nullptr;

int chosenScale(int argc, char **argv, int otherwise)
{
    const QByteArray option = "--scale=";
    for (int index = 1; index < argc; ++index) {
        const QByteArray argument(argv[index]);
        if (argument.startsWith(option)) {
            return argument.mid(option.size()).toInt();
        }
    }
    return otherwise;
}

} // namespace

int runGuiTests(int argc, char **argv, const GuiTestOptions &options)
{
    ::testing::InitGoogleTest(&argc, argv);
    const int scale = chosenScale(argc, argv, options.scale);
    XServer server({.size = options.sizeInPoints ? *options.sizeInPoints * scale : options.size, .scale = scale});
    const WindowManager windowManager(server, options.windowManager);
    const Compositor compositor(server, options.compositor);
    const PrivateFolders folders;
    QProcessEnvironment environment = server.clientEnvironment();
    folders.applyTo(environment);
    const SessionBus bus(environment);
    bus.applyTo(environment);
    const QStringList before = QProcessEnvironment::systemEnvironment().keys();
    for (const QString &name : before) {
        if (!environment.contains(name)) {
            qunsetenv(name.toLocal8Bit().constData());
        }
    }
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
    }
    theServer = &server;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    installLogWatch();
    const int result = RUN_ALL_TESTS();
    theServer = nullptr;
    return result;
}

XServer &guiTestServer()
{
    return *theServer;
}

bool hasKeyboard(const QWidget *window)
{
    return window != nullptr && window->isActiveWindow() && theServer->connection().focusedWindow() == window->winId();
}

} // namespace lumenfold::test

/// The tests' main function: a virtual X server whose desktop resolution the command line can choose (--dpi=192).
#include "tests/components/windowlist/WindowListTest.h"

#include "tests/support/unit/LogWatch.h"

#include <QApplication>

#include <string_view>

int main(int argc, char **argv)
{
    using namespace lumenfold::test;
    ::testing::InitGoogleTest(&argc, argv);
    XServer server({.size = {1280, 800}});
    constexpr std::string_view option = "--dpi=";
    if (argc > 1 && std::string_view(argv[1]).starts_with(option)) {
        server.connection().setProperty(server.connection().root(), "RESOURCE_MANAGER", "STRING",
                                        "Xft.dpi:\t" + QByteArray(argv[1] + option.size()) + '\n');
        server.connection().sync();
    }
    qputenv("DISPLAY", server.display());
    qputenv("QT_QPA_PLATFORM", "xcb");
    WindowListTest::useServer(server);

    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    installLogWatch();
    return RUN_ALL_TESTS();
}

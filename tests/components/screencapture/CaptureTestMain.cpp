/// The tests' main function: a virtual X server whose desktop resolution the command line can choose (--dpi=168, as
/// desktops do it that are set to 175 %), and the toolkit with whole scale factors, as the program has it.
#include "tests/components/screencapture/CaptureTest.h"

#include "tests/support/unit/LogWatch.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <string_view>

namespace {

constexpr int plainResolution = 96;

int resolutionFrom(int argc, char **argv)
{
    constexpr std::string_view option = "--dpi=";
    for (int index = 1; index < argc; ++index) {
        const std::string_view argument(argv[index]);
        if (argument.starts_with(option)) {
            return std::atoi(argument.substr(option.size()).data());
        }
    }
    return plainResolution;
}

} // namespace

int main(int argc, char **argv)
{
    using namespace lumenfold::test;
    ::testing::InitGoogleTest(&argc, argv);
    XServer server({.size = {1280, 800}});
    const QByteArray resources = "Xft.dpi:\t" + QByteArray::number(resolutionFrom(argc, argv)) + '\n';
    server.connection().setProperty(server.connection().root(), "RESOURCE_MANAGER", "STRING", resources);
    server.connection().sync();
    qputenv("DISPLAY", server.display());
    qputenv("QT_QPA_PLATFORM", "xcb");
    CaptureTest::useServer(server);

    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    installLogWatch();
    return RUN_ALL_TESTS();
}

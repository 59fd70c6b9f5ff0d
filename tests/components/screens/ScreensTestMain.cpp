/// The tests' main function: a virtual X server, and the toolkit with whole scale factors, as the program has it. The
/// command line can choose the desktop's resolution (--dpi=192) or the scale of each monitor (--scales=left=2;right=1).
#include "tests/components/screens/ScreensTest.h"

#include "tests/support/unit/LogWatch.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace {

QByteArray optionValue(int argc, char **argv, const QByteArray &option)
{
    for (int index = 1; index < argc; ++index) {
        const QByteArray argument(argv[index]);
        if (argument.startsWith(option)) {
            return argument.mid(option.size());
        }
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    using namespace lumenfold::test;
    ::testing::InitGoogleTest(&argc, argv);
    XServer server({.size = {1280, 800}});
    const QByteArray resolution = optionValue(argc, argv, "--dpi=");
    if (!resolution.isEmpty()) {
        server.connection().setProperty(server.connection().root(), "RESOURCE_MANAGER", "STRING",
                                        "Xft.dpi:\t" + resolution + '\n');
        server.connection().sync();
    }
    const QByteArray scales = optionValue(argc, argv, "--scales=");
    if (!scales.isEmpty()) {
        qputenv("QT_SCREEN_SCALE_FACTORS", scales);
    }
    qputenv("DISPLAY", server.display());
    qputenv("QT_QPA_PLATFORM", "xcb");
    ScreensTest::useServer(server);

    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    installLogWatch();
    return RUN_ALL_TESTS();
}

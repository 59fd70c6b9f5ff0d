#pragma once

#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/XServer.h"

#include <optional>

class QWidget;

/// For component tests that need a QApplication on a real X server. A test program of that kind has a main function of
/// its own, which is one line: `return lumenfold::test::runGuiTests(argc, argv);`
namespace lumenfold::test {

struct GuiTestOptions {
    /// Pixels.
    QSize size{1280, 800};
    /// The same in points; goes before the pixels.
    std::optional<QSize> sizeInPoints;
    int scale = 1;
    WindowManagerKind windowManager = WindowManagerKind::none;
    CompositorKind compositor = CompositorKind::none;
};

/// Starts the server and what else is asked for, then a QApplication on it with private folders, then the tests with
/// the log watched. The command line may say another scale than the options: --scale=2.
[[nodiscard]] int runGuiTests(int argc, char **argv, const GuiTestOptions &options = {});

/// The server that runGuiTests started.
[[nodiscard]] XServer &guiTestServer();

/// Whether keys that are pressed now go to that window, which may be null. The toolkit takes a window for the active
/// one before the server gives it the keyboard.
[[nodiscard]] bool hasKeyboard(const QWidget *window);

} // namespace lumenfold::test

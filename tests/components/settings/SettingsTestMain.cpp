#include "tests/support/desktop/GuiTest.h"

int main(int argc, char **argv)
{
    return lumenfold::test::runGuiTests(
        argc, argv, {.sizeInPoints = QSize(1000, 700), .windowManager = lumenfold::test::WindowManagerKind::openbox});
}

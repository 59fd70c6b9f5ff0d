#include "tests/support/desktop/GuiTest.h"

int main(int argc, char **argv)
{
    return lumenfold::test::runGuiTests(argc, argv, {.windowManager = lumenfold::test::WindowManagerKind::openbox});
}

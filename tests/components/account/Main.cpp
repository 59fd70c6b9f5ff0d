#include "tests/support/desktop/GuiTest.h"

/// As in the tests of the secret store.
extern "C" const char *__asan_default_options() // NOLINT(readability-identifier-naming)
{
    return "fast_unwind_on_malloc=0";
}

int main(int argc, char **argv)
{
    return lumenfold::test::runGuiTests(argc, argv, {.windowManager = lumenfold::test::WindowManagerKind::openbox});
}

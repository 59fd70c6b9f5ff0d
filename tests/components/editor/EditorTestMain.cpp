#include "tests/support/desktop/GuiTest.h"

#include <unistd.h>

/// The web engine's own deletions are not by the book, and what its threads leave when the process ends cannot be told
/// from leaks: neither is ours to mend. What the controller does without an engine is in the unit tests, leaks and all.
extern "C" const char *__asan_default_options() // NOLINT(readability-identifier-naming)
{
    return "new_delete_type_mismatch=0:alloc_dealloc_mismatch=0:detect_leaks=0";
}

int main(int argc, char **argv)
{
    // The web engine has no sandbox for the superuser, and continuous integration often is one. The program itself
    // never does this.
    if (::geteuid() == 0) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
    return lumenfold::test::runGuiTests(argc, argv, {.windowManager = lumenfold::test::WindowManagerKind::openbox});
}

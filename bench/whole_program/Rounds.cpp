#include "bench/whole_program/Rounds.h"

#include "tests/support/desktop/Session.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace lumenfold::bench {

int measureInRounds(int argc, char **argv, int defaultRounds, void (*measure)(int rounds))
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : defaultRounds;
    if (rounds < 1) {
        std::fprintf(stderr, "usage: %s [rounds]\n", argv[0]);
        return 2;
    }
    // Only for the fonts of the painted desktop; Qt asks for a folder of the session, which there may be none of.
    const test::PrivateFolders ownFolders;
    qputenv("XDG_RUNTIME_DIR", ownFolders.path("runtime").toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    try {
        measure(rounds);
        return 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "The measuring stopped: %s\n", error.what());
        return 1;
    }
}

} // namespace lumenfold::bench

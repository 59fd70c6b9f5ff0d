/// Takes Super+Alt+1, answers no press of it, and says "ready" and "asked" on its way.
#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/KeyEventTap.h"
#include "platform/keyboard/x11/X11KeyboardRouter.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cstdio>

using namespace lumenfold;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto router = x11::X11KeyboardRouter::start();
    if (!router) {
        return 1;
    }
    const auto tap = router->taps().createTap(TapScope::hotKeys, [](const KeyEvent &) -> TapDisposition {
        std::puts("asked");
        std::fflush(stdout);
        while (true) {
            ::pause();
        }
    });
    tap->enable();
    const auto hotKey = router->hotKeys().registerHotKey(18, carbon::cmdKey | carbon::optionKey, {});
    if (hotKey.status != noHotKeyError) {
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

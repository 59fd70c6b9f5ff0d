#include "app/lifecycle/ProgramUpdater.h"

#include "app/lifecycle/BuiltInUpdates.h"
#include "app/updates/HttpUpdateFeed.h"
#include "app/updates/UpdateWindowController.h"
#include "platform/updates/AppcastUpdaterController.h"

#include <QCoreApplication>

namespace lumenfold {
namespace {

class ProgramUpdater : public StandardUpdaterController {
public:
    ProgramUpdater(const UpdaterCollaborators &with, UpdaterDelegate &delegate)
        : m_feed(with.http, builtInUpdateFeed())
        , m_window({.appearance = with.appearance,
                    .workspace = with.workspace,
                    .runningVersion = QCoreApplication::applicationVersion()})
        , m_updater({.feed = m_feed,
                     .defaults = with.defaults,
                     .queue = with.queue,
                     .workspace = with.workspace,
                     .user = m_window,
                     .delegate = delegate},
                    {.publicKey = builtInUpdateKey(),
                     .version = QCoreApplication::applicationVersion(),
                     .systemVersion = systemVersion()})
    {
    }

    void checkForUpdates() override { m_updater.checkForUpdates(); }

private:
    HttpUpdateFeed m_feed;
    UpdateWindowController m_window;
    AppcastUpdaterController m_updater;
};

} // namespace

std::unique_ptr<StandardUpdaterController> makeProgramUpdater(const UpdaterCollaborators &with,
                                                              UpdaterDelegate &delegate)
{
    return std::make_unique<ProgramUpdater>(with, delegate);
}

} // namespace lumenfold

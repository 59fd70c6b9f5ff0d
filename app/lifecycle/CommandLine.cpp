#include "app/lifecycle/CommandLine.h"

namespace lumenfold {

QByteArrayList commandLineActions()
{
    return {"capture-full-screen", "capture-area", "capture-last-area", "settings", "quit"};
}

CommandLine parseCommandLine(const QByteArrayList &arguments)
{
    using Wish = CommandLine::Wish;
    if (arguments.isEmpty()) {
        return {};
    }
    const QByteArray &first = arguments.first();
    if (arguments.size() > 1) {
        return {.wish = Wish::misunderstood};
    }
    if (first == "--help" || first == "-h") {
        return {.wish = Wish::help};
    }
    if (first == "--version") {
        return {.wish = Wish::version};
    }
    if (commandLineActions().contains(first)) {
        return {.wish = Wish::action, .action = first};
    }
    return {.wish = Wish::misunderstood};
}

QByteArray commandLineHelp()
{
    return "usage: lumenfold [" + commandLineActions().join(" | ") +
           "]\n\n"
           "Starts LumenFold, or brings up the settings of the one that runs. With the name of an action, the one "
           "that\n"
           "runs, or the one that is started, does that.\n";
}

} // namespace lumenfold

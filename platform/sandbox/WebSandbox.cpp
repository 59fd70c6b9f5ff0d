#include "platform/sandbox/WebSandbox.h"

#include <QtGlobal>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <sched.h>

namespace lumenfold {
namespace {

/// Where a system takes the rights in a new user namespace away again, making that alone still works; so what the
/// sandbox makes with these rights is made as well.
bool canMakeNamespaces()
{
    const pid_t child = ::fork();
    if (child == 0) {
        const bool made = ::unshare(CLONE_NEWUSER) == 0 && ::unshare(CLONE_NEWPID | CLONE_NEWNET) == 0;
        ::_exit(made ? 0 : 1);
    }
    if (child < 0) {
        return false;
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

WebSandbox webSandbox()
{
    if (qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX")) {
        return WebSandbox::available;
    }
    if (::geteuid() == 0) {
        return WebSandbox::superuser;
    }
    return canMakeNamespaces() ? WebSandbox::available : WebSandbox::unavailable;
}

} // namespace lumenfold

#include "tests/support/fakes/FakeWorkspace.h"

namespace lumenfold::test {

void FakeWorkspace::open(const QUrl &address)
{
    openedAddresses.append(address);
    called(QStringLiteral("open ") + address.toString());
}

ActivationPolicy FakeWorkspace::activationPolicy() const
{
    return policies.isEmpty() ? ActivationPolicy::regular : policies.constLast();
}

void FakeWorkspace::setActivationPolicy(ActivationPolicy policy)
{
    policies.append(policy);
    called(QStringLiteral("setActivationPolicy %1").arg(static_cast<int>(policy)));
}

void FakeWorkspace::activateIgnoringOtherApps()
{
    ++activations;
    called(QStringLiteral("activate"));
}

void FakeWorkspace::beep()
{
    ++beeps;
    called(QStringLiteral("beep"));
}

void FakeWorkspace::terminate()
{
    ++terminations;
    called(QStringLiteral("terminate"));
}

void FakeWorkspace::called(const QString &call) const
{
    if (onCall) {
        onCall(call);
    }
}

} // namespace lumenfold::test

/// A session bus for the whole program, because the libraries below connect once.
#include "tests/components/secrets/SecretsFixture.h"

#include "tests/support/unit/LogWatch.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

/// Leaks inside libraries are told apart by their stacks, which these libraries only show to the slow way of looking.
extern "C" const char *__asan_default_options() // NOLINT(readability-identifier-naming)
{
    return "fast_unwind_on_malloc=0";
}

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    const lumenfold::test::SessionBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLatin1());
    lumenfold::test::SecretsFixture::setBus(bus);
    lumenfold::test::installLogWatch();
    return RUN_ALL_TESTS();
}

/// The main function of every test program: an unexpected warning in the log fails the test that caused it.
#include "tests/support/unit/LogWatch.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    lumenfold::test::installLogWatch();
    return RUN_ALL_TESTS();
}

/// The main function of the tests that hold widgets: no display, and an unexpected warning in the log fails the test
/// that caused it.
#include "tests/support/unit/LogWatch.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    lumenfold::test::installLogWatch();
    return RUN_ALL_TESTS();
}

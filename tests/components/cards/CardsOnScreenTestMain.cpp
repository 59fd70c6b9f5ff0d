#include "tests/support/desktop/GuiTest.h"

int main(int argc, char **argv)
{
    // A height at which a card is 160 x 120 points, so that its size is a whole number of points and of pixels.
    return lumenfold::test::runGuiTests(argc, argv, {.sizeInPoints = QSize(800, 564)});
}

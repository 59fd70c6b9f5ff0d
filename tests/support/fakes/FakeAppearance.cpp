#include "tests/support/fakes/FakeAppearance.h"

namespace lumenfold::test {

void FakeAppearance::setColorScheme(ColorScheme colorScheme)
{
    if (colorScheme != m_colorScheme) {
        m_colorScheme = colorScheme;
        Q_EMIT changed();
    }
}

} // namespace lumenfold::test

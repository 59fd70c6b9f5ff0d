#pragma once

#include "platform/appearance/Appearance.h"

namespace lumenfold::test {

/// Looks as a test says; light at first.
class FakeAppearance : public Appearance {
    Q_OBJECT

public:
    using Appearance::Appearance;

    [[nodiscard]] ColorScheme colorScheme() const override { return m_colorScheme; }

    /// Says that it has changed, if it has.
    void setColorScheme(ColorScheme colorScheme);

private:
    ColorScheme m_colorScheme = ColorScheme::light;
};

} // namespace lumenfold::test

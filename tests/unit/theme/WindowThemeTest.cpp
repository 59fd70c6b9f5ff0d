#include "app/theme/WindowTheme.h"

#include "tests/support/fakes/FakeAppearance.h"

#include <QApplication>
#include <QLabel>

#include <gtest/gtest.h>

#include <cmath>

namespace lumenfold::test {
namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor blended(const QColor &over, const QColor &under)
{
    const auto mix = [&](float a, float b) { return a * over.alphaF() + b * (1 - over.alphaF()); };
    return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                            mix(over.blueF(), under.blueF()));
}

/// As the guidelines for readable web pages reckon it: 4.5 for text.
double contrast(const QColor &text, const QColor &ground)
{
    const double one = luminance(blended(text, ground));
    const double other = luminance(ground);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

class WindowThemeTest : public ::testing::Test {
protected:
    ~WindowThemeTest() override { QApplication::setPalette(QPalette()); }

    FakeAppearance m_appearance;
};

class BothSchemes : public WindowThemeTest, public ::testing::WithParamInterface<ColorScheme> {};

TEST_P(BothSchemes, TextsCanBeRead)
{
    const QPalette palette = windowPalette(GetParam());
    const QColor window = palette.color(QPalette::Window);
    const QColor base = palette.color(QPalette::Base);
    EXPECT_GE(contrast(palette.color(QPalette::WindowText), window), 7);
    EXPECT_GE(contrast(palette.color(QPalette::Text), base), 7);
    EXPECT_GE(contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)), 7);
    EXPECT_GE(contrast(secondaryText(palette), window), 4.5);
    EXPECT_GE(contrast(palette.color(QPalette::Link), window), 4.5);
}

INSTANTIATE_TEST_SUITE_P(Schemes, BothSchemes, ::testing::Values(ColorScheme::light, ColorScheme::dark));

TEST_F(WindowThemeTest, TheToolkitsOwnColorsAreKeptWhereTheyFit)
{
    EXPECT_EQ(windowPalette(ColorScheme::light), QGuiApplication::palette());
    QApplication::setPalette(QPalette(QColor(20, 60, 20), QColor(10, 40, 10)));
    EXPECT_EQ(windowPalette(ColorScheme::dark), QGuiApplication::palette());
    EXPECT_GT(windowPalette(ColorScheme::light).color(QPalette::Window).lightness(), 200);
}

TEST_F(WindowThemeTest, AWindowAndItsControlsFollowTheDesktop)
{
    QWidget window;
    QLabel label(&window);
    WindowTheme::install(window, m_appearance);
    EXPECT_GT(label.palette().color(QPalette::Window).lightness(), 200);
    m_appearance.setColorScheme(ColorScheme::dark);
    EXPECT_LT(label.palette().color(QPalette::Window).lightness(), 60);
    m_appearance.setColorScheme(ColorScheme::light);
    EXPECT_GT(label.palette().color(QPalette::Window).lightness(), 200);
}

TEST_F(WindowThemeTest, OtherColorsOfTheToolkitAreTakenWhereTheyFit)
{
    QWidget window;
    WindowTheme::install(window, m_appearance);
    m_appearance.setColorScheme(ColorScheme::dark);
    const QPalette green(QColor(20, 60, 20), QColor(10, 40, 10));
    QApplication::setPalette(green);
    EXPECT_EQ(window.palette().color(QPalette::Window), QColor(10, 40, 10));
    m_appearance.setColorScheme(ColorScheme::light);
    EXPECT_GT(window.palette().color(QPalette::Window).lightness(), 200);
}

} // namespace
} // namespace lumenfold::test

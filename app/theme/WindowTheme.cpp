#include "app/theme/WindowTheme.h"

#include "app/configuration/Palette.h"

#include <QApplication>
#include <QEvent>
#include <QPushButton>
#include <QWidget>

namespace lumenfold {
namespace {

ColorScheme schemeOf(const QPalette &palette)
{
    const bool isDark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    return isDark ? ColorScheme::dark : ColorScheme::light;
}

/// The few colours that a palette is made of.
struct Colors {
    QColor window;
    QColor base;
    QColor alternateBase;
    QColor button;
    QColor text;
    QColor link;
};

constexpr Colors lightColors{
    .window = {246, 246, 247},
    .base = {255, 255, 255},
    .alternateBase = {238, 238, 240},
    .button = {252, 252, 253},
    .text = {29, 29, 31},
    .link = {0, 102, 204},
};

constexpr Colors darkColors{
    .window = {38, 38, 40},
    .base = {27, 27, 29},
    .alternateBase = {51, 51, 54},
    .button = {66, 66, 69},
    .text = {235, 235, 240},
    .link = {102, 179, 255},
};

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QPalette paletteOf(const Colors &colors)
{
    constexpr double placeholderOpacity = 0.55;
    constexpr double disabledOpacity = 0.4;
    // Shadows, bevels and the frames of controls are made from the button's colour.
    QPalette palette(colors.button, colors.window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, withOpacity(colors.text, disabledOpacity));
    }
    palette.setColor(QPalette::PlaceholderText, withOpacity(colors.text, placeholderOpacity));
    palette.setColor(QPalette::Base, colors.base);
    palette.setColor(QPalette::AlternateBase, colors.alternateBase);
    palette.setColor(QPalette::ToolTipBase, colors.alternateBase);
    palette.setColor(QPalette::Highlight, palette::accentPrimary);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colors.link);
    palette.setColor(QPalette::LinkVisited, colors.link);
    return palette;
}

} // namespace

QPalette windowPalette(ColorScheme scheme)
{
    const QPalette ofToolkit = QGuiApplication::palette();
    if (schemeOf(ofToolkit) == scheme) {
        return ofToolkit;
    }
    return paletteOf(scheme == ColorScheme::dark ? darkColors : lightColors);
}

QColor secondaryText(const QPalette &palette)
{
    constexpr double opacity = 0.66;
    return withOpacity(palette.color(QPalette::WindowText), opacity);
}

QColor separatorColor(const QPalette &palette)
{
    constexpr double opacity = 0.16;
    return withOpacity(palette.color(QPalette::WindowText), opacity);
}

void widenButton(QPushButton &button)
{
    constexpr int padding = 10;
    button.setMinimumWidth(button.sizeHint().width() + 2 * padding);
}

void WindowTheme::install(QWidget &window, const Appearance &appearance)
{
    new WindowTheme(window, appearance);
}

WindowTheme::WindowTheme(QWidget &window, const Appearance &appearance)
    : QObject(&window), m_window(window), m_appearance(appearance)
{
    connect(&m_appearance, &Appearance::changed, this, &WindowTheme::apply);
    QCoreApplication::instance()->installEventFilter(this);
    apply();
}

bool WindowTheme::eventFilter(QObject *watched, QEvent *event)
{
    // Other colours of the toolkit, which may be the ones that fit now.
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) {
        apply();
    }
    return false;
}

void WindowTheme::apply()
{
    const QPalette wanted = windowPalette(m_appearance.colorScheme());
    // A window without colours of its own goes on following the toolkit's.
    m_window.setPalette(wanted == QGuiApplication::palette() ? QPalette() : wanted);
}

} // namespace lumenfold

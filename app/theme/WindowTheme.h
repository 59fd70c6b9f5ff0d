#pragma once

#include "platform/appearance/Appearance.h"

#include <QObject>
#include <QPalette>

class QPushButton;
class QWidget;

namespace lumenfold {

/// The colours of a window and of all controls in it: the toolkit's own where they are as light or dark as the desktop
/// wants them, since they may be the user's; otherwise our own.
[[nodiscard]] QPalette windowPalette(ColorScheme scheme);

/// Colour of what is written small beside the main thing. Follows the palette.
[[nodiscard]] QColor secondaryText(const QPalette &palette);

/// Colour of the lines between parts of a window. Follows the palette.
[[nodiscard]] QColor separatorColor(const QPalette &palette);

/// Gives a button that stands by itself more room beside its text than the style does. To be called when its text is
/// known.
void widenButton(QPushButton &button);

/// Keeps the colours of a window as the desktop wants them, for as long as the window lives.
class WindowTheme : public QObject {
    Q_OBJECT

public:
    /// The window owns this object. `appearance` outlives both.
    static void install(QWidget &window, const Appearance &appearance);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    WindowTheme(QWidget &window, const Appearance &appearance);

    void apply();

    QWidget &m_window;
    const Appearance &m_appearance;
};

} // namespace lumenfold

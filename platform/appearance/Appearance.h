#pragma once

#include <QObject>

namespace lumenfold {

/// Whether the desktop wants dark writing on a light ground, or light writing on a dark one.
enum class ColorScheme { light, dark };

/// How the user wants programs to look. Main thread.
class Appearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// As it is known now. Answers at once; the desktop's own word may come a moment after the program has started.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;

Q_SIGNALS:
    /// The color scheme is another one.
    void changed();
};

} // namespace lumenfold

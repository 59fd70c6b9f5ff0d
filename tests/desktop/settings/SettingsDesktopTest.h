#pragma once

#include "tests/desktop/accessibility/AssistiveTechnology.h"
#include "tests/desktop/account/OnlineDesktopTest.h"

#include <optional>
#include <string_view>

namespace lumenfold::test {

/// The settings window of the shipped program.
class SettingsDesktopTest : public OnlineDesktopTest {
protected:
    /// Launches the program once more, as people do who look for a window of it.
    void openSettings();
    [[nodiscard]] std::optional<WindowInfo> window() const;
    void closeSettings();

    /// With the recorder that the keyboard is at.
    void record(std::string_view keys);
    /// The area that is dragged from (600, 100) to (900, 300).
    void captureArea(std::string_view shortcut, int cardsAfterwards);

    /// What is stored, as it is in the file.
    [[nodiscard]] QByteArray settings() const;

    /// What assistive technologies find under that role and name, as soon as it shows; nothing if it never does.
    [[nodiscard]] std::optional<AccessibleObject> find(const AssistiveTechnology &technology, const QString &role,
                                                       const QString &name);
    void press(const AssistiveTechnology &technology, const QString &role, const QString &name);
};

} // namespace lumenfold::test

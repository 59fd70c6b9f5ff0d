#pragma once

#include "platform/appearance/Appearance.h"

#include <optional>

namespace lumenfold {

/// What the settings portal of the desktop says ("color-scheme" of "org.freedesktop.appearance"); where it says
/// nothing, what the toolkit's own colours look like. The session bus is asked a moment after the start and must have
/// been greeted before (platform/session/SessionBus); nothing here waits for the portal, which may hang for ever.
class PortalAppearance : public Appearance {
    Q_OBJECT

public:
    /// Needs the toolkit's application object.
    PortalAppearance();
    ~PortalAppearance() override;

    [[nodiscard]] ColorScheme colorScheme() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void readSetting();

private:
    void askTheDesktop();
    void take(std::optional<ColorScheme> preference);
    void tellIfChanged();

    /// Of the desktop; nothing while it has none or has not said so.
    std::optional<ColorScheme> m_preference;
    ColorScheme m_told;
};

} // namespace lumenfold

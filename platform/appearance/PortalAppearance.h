#pragma once

#include "platform/appearance/Appearance.h"

#include <memory>
#include <optional>

namespace lumenfold {

/// What the settings portal of the desktop says ("color-scheme" of "org.freedesktop.appearance"); where it says
/// nothing, what the toolkit's own colours look like. Nothing here waits for the bus, which may hang for ever.
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
    struct BusWait;

    void busAnswered();
    void take(std::optional<ColorScheme> preference);
    void tellIfChanged();

    std::shared_ptr<BusWait> m_busWait;
    /// Of the desktop; nothing while it has none or has not said so.
    std::optional<ColorScheme> m_preference;
    ColorScheme m_told;
};

} // namespace lumenfold

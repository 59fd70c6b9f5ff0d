#pragma once

#include "service/templates/TemplateStore.h"
#include "settings/SettingsWindowController.h"
#include "shortcuts/ShortcutStore.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeAutostart.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakeOpenPanel.h"
#include "tests/support/fakes/FakePreviewDownloads.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <memory>
#include <vector>

class QDialog;

namespace lumenfold::test {

/// A settings window, and everything that it changes.
class SettingsDesk : public FakeAccount {
public:
    /// Keys come from `taps`; from the fake's when null. They must outlive the desk.
    explicit SettingsDesk(KeyEventTapService *taps = nullptr);
    ~SettingsDesk();
    SettingsDesk(const SettingsDesk &) = delete;
    SettingsDesk &operator=(const SettingsDesk &) = delete;

    /// With that address, if it is not empty; announced if there is a window already.
    void signIn(const QString &email);

    /// Null before the first present().
    [[nodiscard]] static QDialog *window();
    /// "General", "Template" or "Account".
    static void showTab(const QString &label);

    /// The part of that type and text which is seen, or null.
    template <typename Widget>
    [[nodiscard]] static Widget *part(const QString &text)
    {
        return firstSeen<Widget>([&](const Widget &each) { return each.text() == text; });
    }
    /// The part of that type and accessible name which is seen, or null.
    template <typename Widget>
    [[nodiscard]] static Widget *named(const QString &name)
    {
        return firstSeen<Widget>([&](const Widget &each) { return each.accessibleName() == name; });
    }
    /// Every part of that type that is seen, scrolled out of sight or not, in the order of their making.
    template <typename Widget>
    [[nodiscard]] static QList<Widget *> parts()
    {
        QList<Widget *> all = anywhere()->findChildren<Widget *>();
        all.removeIf([](const Widget *each) { return !each->isVisible(); });
        return all;
    }

    FakeKeyEventTapService fakeTaps;
    FakeAlerts alerts;
    FakeWorkspace workspace;
    FakeAppearance appearance;
    FakeOpenPanel openPanel;
    FakeAutostart autostart;
    FakeLumenfoldService service;
    FakePreviewDownloads previews;
    FakeApiKeySetupWindow apiKeySetup;
    ShortcutStore shortcuts{defaults, notifications};
    TemplateStore templates{defaults, notifications};
    /// What was announced of recording.
    std::vector<bool> recordings;
    std::unique_ptr<SettingsWindowController> controller;

private:
    [[nodiscard]] static QWidget *anywhere();

    template <typename Widget, typename Condition>
    [[nodiscard]] static Widget *firstSeen(Condition condition)
    {
        for (Widget *each : parts<Widget>()) {
            if (condition(*each)) {
                return each;
            }
        }
        return nullptr;
    }

    std::unique_ptr<NotificationCenter::Observation> m_recordingObservation;
};

} // namespace lumenfold::test

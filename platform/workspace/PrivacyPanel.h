#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

/// Where a desktop lets its user say which programs may look at the screen and the keyboard.
namespace lumenfold {

/// Whether an address is one of the two system-settings pages that the program sends its user to.
[[nodiscard]] bool isPrivacyPanelAddress(const QUrl &address);

struct ProgramCall {
    QString program;
    QStringList arguments;

    friend bool operator==(const ProgramCall &, const ProgramCall &) = default;
};

/// How to open the privacy panel of the present desktop; nothing where there is none. `desktops` are the names in
/// XDG_CURRENT_DESKTOP, the most fitting first.
[[nodiscard]] std::optional<ProgramCall>
privacyPanelCall(const QStringList &desktops, const std::function<bool(const QString &program)> &isInstalled);

} // namespace lumenfold

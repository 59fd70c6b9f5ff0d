#include "platform/workspace/PrivacyPanel.h"

#include <array>

namespace lumenfold {
namespace {

struct Panel {
    QStringView desktop;
    QStringView program;
    QStringView argument;
};

constexpr std::array panels{
    Panel{u"GNOME", u"gnome-control-center", u"privacy"},
    Panel{u"Unity", u"gnome-control-center", u"privacy"},
    Panel{u"Budgie", u"budgie-control-center", u"privacy"},
    Panel{u"X-Cinnamon", u"cinnamon-settings", u"privacy"},
    Panel{u"Pantheon", u"io.elementary.switchboard", u"settings://security/privacy"},
    Panel{u"KDE", u"systemsettings", u"kcm_app-permissions"},
};

} // namespace

bool isPrivacyPanelAddress(const QUrl &address)
{
    return address.scheme() == u"x-apple.systempreferences";
}

std::optional<ProgramCall> privacyPanelCall(const QStringList &desktops,
                                            const std::function<bool(const QString &program)> &isInstalled)
{
    for (const QString &desktop : desktops) {
        for (const Panel &panel : panels) {
            if (desktop.compare(panel.desktop, Qt::CaseInsensitive) == 0 && isInstalled(panel.program.toString())) {
                return ProgramCall{panel.program.toString(), {panel.argument.toString()}};
            }
        }
    }
    return std::nullopt;
}

} // namespace lumenfold

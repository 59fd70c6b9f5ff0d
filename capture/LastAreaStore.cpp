#include "capture/LastAreaStore.h"

#include "platform/defaults/UserDefaults.h"

#include <QDebug>

#include <algorithm>
#include <limits>
#include <vector>

namespace lumenfold {

const QString LastAreaStore::lastAreaRectKey = QStringLiteral("LumenFold.lastAreaRect");
const QString LastAreaStore::lastAreaDisplayKey = QStringLiteral("LumenFold.lastAreaDisplayID");

namespace {

std::optional<Rect> rectFrom(const std::optional<std::vector<double>> &numbers)
{
    if (!numbers || numbers->size() != 4) {
        return std::nullopt;
    }
    const Rect rect{numbers->at(0), numbers->at(1), numbers->at(2), numbers->at(3)};
    if (!rect.isFinite() || rect.width < 0 || rect.height < 0) {
        return std::nullopt;
    }
    return rect;
}

std::optional<DisplayID> displayIDFrom(qint64 number)
{
    if (number == 0) {
        return std::nullopt;
    }
    if (number < 0 || number > std::numeric_limits<DisplayID>::max()) {
        qFatal("LumenFold: the setting %s holds %lld, which is not a display number; remove it and start again",
               qUtf8Printable(LastAreaStore::lastAreaDisplayKey), static_cast<long long>(number));
    }
    return static_cast<DisplayID>(number);
}

} // namespace

LastAreaStore::LastAreaStore(UserDefaults &defaults) : m_defaults(defaults) {}

LastArea LastAreaStore::load() const
{
    return {.rect = rectFrom(m_defaults.numbers(lastAreaRectKey)),
            .displayID = displayIDFrom(m_defaults.integer(lastAreaDisplayKey))};
}

void LastAreaStore::save(const Rect &rect, DisplayID displayID)
{
    m_defaults.setNumbers(lastAreaRectKey, {rect.x, rect.y, rect.width, rect.height});
    m_defaults.setInteger(lastAreaDisplayKey, displayID);
}

std::optional<Screen> screenForLastArea(const Rect &rect, std::optional<DisplayID> displayID,
                                        const std::vector<Screen> &screens)
{
    auto found = displayID ? std::ranges::find(screens, *displayID, &Screen::displayID) : screens.end();
    if (found == screens.end()) {
        found =
            std::ranges::find_if(screens, [&](const Screen &screen) { return screen.frame.contains(rect.center()); });
    }
    if (found == screens.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace lumenfold

#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/screens/Screens.h"

#include <QString>

#include <optional>
#include <vector>

namespace lumenfold {

class UserDefaults;

/// The area that was captured last, as far as it is known.
struct LastArea {
    /// Global points.
    std::optional<Rect> rect;
    /// The screen on which it was selected.
    std::optional<DisplayID> displayID;

    friend bool operator==(const LastArea &, const LastArea &) = default;
};

/// Keeps the last area across launches.
class LastAreaStore {
public:
    /// Four numbers: minimum x, minimum y, width, height.
    static const QString lastAreaRectKey;
    /// A whole number; 0 counts as absent.
    static const QString lastAreaDisplayKey;

    /// `defaults` must outlive this object.
    explicit LastAreaStore(UserDefaults &defaults);

    /// A stored rectangle that is not four finite numbers, or whose size is negative, counts as absent. A stored
    /// display id that is no 32-bit number without sign ends the program.
    [[nodiscard]] LastArea load() const;

    /// Writes both at once, the rectangle first.
    void save(const Rect &rect, DisplayID displayID);

private:
    UserDefaults &m_defaults;
};

/// The screen on which to capture the last area again, among `screens` in the system's order: the one on which it was
/// selected, else the first that contains its centre; nothing when neither is there.
[[nodiscard]] std::optional<Screen> screenForLastArea(const Rect &rect, std::optional<DisplayID> displayID,
                                                      const std::vector<Screen> &screens);

} // namespace lumenfold

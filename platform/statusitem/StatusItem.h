#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

namespace lumenfold {

/// Who gets an item's action; compared, never followed. The action itself sees to it that nobody is called who is gone.
using MenuTarget = const void *;

struct MenuItem {
    enum class Kind { command, separator };

    Kind kind = Kind::command;
    QString title;
    /// A disabled item is shown and does nothing.
    bool isEnabled = true;
    /// Beside the title, as many points large as its pixels divided by its device pixel ratio; null for none.
    QImage image;
    /// The character that the key types without modifiers; keys that type none have the characters that macOS gives
    /// them (U+F700 is the up arrow). Empty for none. It is shown only: whoever wants the key registers it.
    QString keyEquivalent;
    /// An OR of keyFlags::.
    std::uint64_t keyEquivalentModifierMask = 0;
    /// Empty for an item that only tells something.
    std::function<void()> action;
    MenuTarget target = nullptr;

    [[nodiscard]] static MenuItem separator()
    {
        MenuItem item;
        item.kind = Kind::separator;
        return item;
    }
};

using Menu = std::vector<MenuItem>;

/// The picture of a status item.
struct StatusImage {
    /// An SVG with a square view box that consists of filled <path>s in #000 and nothing else. Empty for no picture.
    QByteArray drawing;
    /// Drawn in the panel's own writing colour; what stands here black is only a shape.
    bool isTemplate = true;
    QString accessibilityDescription;

    friend bool operator==(const StatusImage &, const StatusImage &) = default;
};

/// The program's place in the desktop's status area. It is there as soon as the desktop has such an area, which may be
/// late or never, and again after the area was restarted; nobody is told. Nothing here waits for the desktop. Main
/// thread.
class StatusItem {
public:
    StatusItem() = default;
    StatusItem(const StatusItem &) = delete;
    StatusItem &operator=(const StatusItem &) = delete;
    virtual ~StatusItem() = default;

    virtual void setImage(const StatusImage &image) = 0;

    /// A small dot upon the picture that says that there is news.
    virtual void setUpdateBadgeVisible(bool visible) = 0;

    /// The menu that a click with either button shows, in place of the one before. A chosen item's action runs on the
    /// event loop.
    virtual void setMenu(Menu menu) = 0;
};

} // namespace lumenfold

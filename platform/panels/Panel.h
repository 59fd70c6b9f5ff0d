#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/keyboard/KeyEvent.h"

#include <QColor>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace lumenfold {

/// Where a panel stands among all windows (macOS numbering). Both are above every ordinary window and full-screen
/// window.
enum class PanelLevel { floating = 3, screenSaver = 1000 };

/// Whether key presses may be sent to the panel at all. No panel ever takes the focus from the window that has it: a
/// panel that becomes key gets the keys while the front window keeps its focus.
enum class PanelKeyPolicy { never, mayBecomeKey };

/// Whether the window server may move the panel back onto the screen.
enum class PanelConstraint { constrained, unconstrained };

/// The cursor over the panel's content, as the platform names it.
enum class CursorShape { arrow, crosshair };

struct PanelOptions {
    PanelLevel level = PanelLevel::floating;
    PanelKeyPolicy keyPolicy = PanelKeyPolicy::never;
    PanelConstraint constraint = PanelConstraint::constrained;
    /// The transparent band around the visible content, in points: what of the panel is not "the window" to the eye.
    double transparentMargin = 0;
    /// What the panel shows from the moment it is ordered front until its view has been painted, which then takes a
    /// moment longer: for large panels that begin in one colour and cannot wait for all their pixels. Clear when
    /// absent; of no effect while windows do not blend.
    std::optional<QColor> initialFill;
    /// Read out by assistive technology, and the window's title for whoever lists windows.
    QString title;

    friend bool operator==(const PanelOptions &, const PanelOptions &) = default;
};

/// How an animation's value moves from start to end over its duration.
enum class AnimationCurve {
    /// The platform's default timing: ease in and ease out.
    standard,
    easeIn,
};

/// What one animation group changes. Absent values stay as they are.
struct PanelAnimation {
    std::optional<Rect> frame;
    std::optional<double> alpha;
    std::chrono::milliseconds duration{0};
    AnimationCurve curve = AnimationCurve::standard;
    /// Called on the main thread when the end values are reached. Not called when a later animation or a direct setting
    /// of the same value replaces this one, nor when the panel goes away first.
    std::function<void()> onCompleted;
};

/// A borderless window that hosts one view: on every workspace, above other windows, never focused, never in the task
/// bar or the window switcher, never in the program's own pictures. Its background is clear. Frames are global points
/// and are kept exactly as set.
class Panel {
public:
    Panel() = default;
    Panel(const Panel &) = delete;
    Panel &operator=(const Panel &) = delete;
    virtual ~Panel() = default;

    /// The view fills the panel and is resized with it. Taken over. May be null (a panel with nothing in it).
    virtual void setContentView(std::unique_ptr<QWidget> view) = 0;

    /// Where the panel is now; in the middle of an animation, where it has got to.
    [[nodiscard]] virtual Rect frame() const = 0;
    /// At once; ends a running animation of the frame.
    virtual void setFrame(const Rect &frame) = 0;

    /// 0 is invisible, 1 opaque.
    [[nodiscard]] virtual double alpha() const = 0;
    virtual void setAlpha(double alpha) = 0;

    virtual void animate(PanelAnimation animation) = 0;

    [[nodiscard]] virtual bool isVisible() const = 0;
    /// Shows the panel above all others of its level, whether or not the program is active.
    virtual void orderFrontRegardless() = 0;
    /// Hides the panel at once. Leaves no trace on screen, not even in a compositor's fade-out.
    virtual void orderOut() = 0;

    /// Sends all key presses to this panel until it is ordered out or another panel becomes key. Nothing for a panel
    /// whose policy is `never`. One that is made key before it is ordered front misses no key that is pressed as soon
    /// as it can be seen.
    virtual void makeKey() = 0;
    /// Gets the key presses while the panel is key; true when it used the event.
    virtual void setKeyHandler(std::function<bool(const KeyEvent &)> handler) = 0;

    virtual void setCursor(CursorShape shape) = 0;
};

/// Makes panels; outlives them.
class PanelFactory {
public:
    PanelFactory() = default;
    PanelFactory(const PanelFactory &) = delete;
    PanelFactory &operator=(const PanelFactory &) = delete;
    virtual ~PanelFactory() = default;

    /// A hidden panel with the given frame and alpha 1.
    [[nodiscard]] virtual std::unique_ptr<Panel> makePanel(const PanelOptions &options, const Rect &frame) = 0;

    /// Whether translucent windows blend with what is beneath them (a compositing manager runs). Without one a view
    /// draws no shadow and no translucency; panels are then cut to the shape of what their view paints.
    [[nodiscard]] virtual bool isTranslucencyAvailable() const = 0;
};

} // namespace lumenfold

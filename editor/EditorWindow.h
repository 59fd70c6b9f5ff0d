#pragma once

namespace lumenfold {

/// What the rest of the program may ask of the embedded editor's window around a capture. The window itself lives in a
/// module that is loaded when the editor first opens; until then nobody implements this and there is nothing to hide.
class EditorWindow {
public:
    EditorWindow() = default;
    EditorWindow(const EditorWindow &) = delete;
    EditorWindow &operator=(const EditorWindow &) = delete;
    virtual ~EditorWindow() = default;

    /// Takes the window off the screen. True when it was visible.
    virtual bool hideForCapture() = 0;
    /// Shows the window again, in front.
    virtual void restoreAfterCapture() = 0;
};

} // namespace lumenfold

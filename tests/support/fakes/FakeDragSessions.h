#pragma once

#include "platform/dragdrop/DragSessions.h"

#include <functional>
#include <vector>

namespace lumenfold::test {

/// Drags nothing and remembers what it was to drag.
class FakeDragSessions : public DragSessions {
public:
    [[nodiscard]] bool isButtonHeld() const override { return isHeld; }
    void run(const FileDrag &drag) override
    {
        drags.push_back(drag);
        if (duringDrag) {
            duringDrag();
        }
    }

    bool isHeld = true;
    std::vector<FileDrag> drags;
    /// What happens while something is dragged.
    std::function<void()> duringDrag;
};

} // namespace lumenfold::test

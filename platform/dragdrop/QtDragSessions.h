#pragma once

#include "platform/dragdrop/DragSessions.h"

namespace lumenfold {

/// The toolkit's drag and drop. Needs its application object.
class QtDragSessions : public DragSessions {
public:
    [[nodiscard]] bool isButtonHeld() const override;
    void run(const FileDrag &drag) override;
};

} // namespace lumenfold

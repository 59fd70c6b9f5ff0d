#pragma once

#include <QObject>

#include <functional>

namespace lumenfold {

/// What the two pills beside the column share with the stack controller, which owns it. Main thread.
class StackControlState : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Mirrors the controller's own state, which sets it; whatever made the column collapse or expand.
    [[nodiscard]] bool isCollapsed() const { return m_isCollapsed; }
    void setCollapsed(bool collapsed);

    /// The collapse pill was pressed. Does nothing until the controller has set it.
    std::function<void()> onToggle = [] {};
    /// The Clear All pill was pressed. Does nothing until the controller has set it.
    std::function<void()> onClearAll = [] {};

    void pressClear();

Q_SIGNALS:
    /// Just after the value has changed.
    void isCollapsedChanged(bool collapsed);

private:
    bool m_isCollapsed = false;
};

} // namespace lumenfold

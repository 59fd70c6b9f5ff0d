#pragma once

#include <QAbstractButton>

namespace lumenfold {

class ActionPanel;
class Appearance;

/// One of the actions that come over a card with the pointer; as transparent as the panel it is on.
class ActionButton : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind { primary, secondary };

    /// In points.
    [[nodiscard]] static int heightOf(Kind kind);

    /// The appearance must outlive the button.
    ActionButton(Kind kind, const QString &title, const Appearance &appearance, ActionPanel &panel);
    ~ActionButton() override;

    /// What it throws on the panel, in the panel's coordinates.
    void paintShadow(QPainter &painter) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Kind m_kind;
    const Appearance &m_appearance;
    const ActionPanel &m_panel;
};

} // namespace lumenfold

#pragma once

#include <QList>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>

class QAbstractButton;

namespace lumenfold {

class ActionButton;
class Appearance;
class PanelFactory;

/// What can be done with a card's picture, on a ground that covers the picture while the pointer is over it. Presses
/// beside the buttons are the picture's. The buttons can be pressed by assistive technologies also while nothing of the
/// panel is seen; only a panel that is not available offers none.
class ActionPanel : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> onEdit;
        std::function<void()> onSave;
        std::function<void()> onCopy;
    };

    /// The appearance and the panels must outlive the view, which fills `parent`.
    ActionPanel(const Actions &actions, const Appearance &appearance, const PanelFactory &panels, QWidget *parent);
    ~ActionPanel() override;

    /// Whether the card offers its actions at all; at once.
    void setAvailable(bool available);
    /// Whether the pointer is over the card: fades the panel in or out.
    void setHovering(bool hovering);

    /// 0 is invisible.
    [[nodiscard]] double opacity() const { return m_opacity; }
    /// What the opacity is or is on its way to.
    [[nodiscard]] bool isShown() const;
    /// In the order of reading; none while the panel is not available.
    [[nodiscard]] QList<QAbstractButton *> buttons() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setOpacity(double opacity);

    const Appearance &m_appearance;
    const PanelFactory &m_panels;
    bool m_isHovering = false;
    double m_opacity = 0;
    QVariantAnimation m_fade;
    ActionButton *m_edit;
    ActionButton *m_save;
    ActionButton *m_copy;
};

} // namespace lumenfold

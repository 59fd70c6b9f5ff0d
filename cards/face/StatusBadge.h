#pragma once

#include "cards/PreviewModel.h"

#include <QAbstractButton>
#include <QBasicTimer>
#include <QLabel>

#include <functional>

namespace lumenfold {

class Appearance;

/// What becomes of a card's upload, on a capsule at the upper edge of its parent, in the middle. Takes presses only
/// while there is an uploaded picture to open.
class StatusBadge : public QLabel {
    Q_OBJECT

public:
    /// `onOpen` is called with the address of the uploaded picture. The appearance must outlive the badge.
    StatusBadge(std::function<void(const QUrl &uploaded)> onOpen, const Appearance &appearance, QWidget *parent);
    ~StatusBadge() override;

    void setStatus(const PreviewModel::Status &status);

    /// After the parent has changed its size.
    void place();

    /// Whether the spinner turns, which is what costs: only while an upload goes on and the badge is on screen.
    [[nodiscard]] bool isSpinning() const { return m_spinner.isActive(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] bool hasIcon() const;
    void spinWhileSeen();

    const Appearance &m_appearance;
    PreviewModel::Status m_status;
    QBasicTimer m_spinner;
    /// Which of the spinner's spokes is the darkest.
    int m_spoke = 0;
    QAbstractButton *m_button;
};

} // namespace lumenfold

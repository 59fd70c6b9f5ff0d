#pragma once

#include <QBasicTimer>
#include <QRectF>
#include <QWidget>

class QPainter;

namespace lumenfold {

/// The wheel of spokes that says that something is under way.
namespace spinner {
inline constexpr int spokes = 8;
/// How long each spoke is the darkest.
inline constexpr int spokeMilliseconds = 100;

/// The wheel as large as `area` is wide.
void paint(QPainter &painter, const QRectF &area, int darkest, QColor color);
} // namespace spinner

/// A small wheel of its own, in the colour of the window's text. It takes its room also while it does not spin and
/// cannot be seen, and wakes nobody then.
class Spinner : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(QWidget *parent = nullptr);

    void setSpinning(bool spins);
    [[nodiscard]] bool isSpinning() const { return m_spins; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void spinWhileSeen();

    bool m_spins = false;
    int m_spoke = 0;
    QBasicTimer m_timer;
};

} // namespace lumenfold

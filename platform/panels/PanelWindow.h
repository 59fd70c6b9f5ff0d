#pragma once

#include "platform/panels/Panel.h"

#include <QPointer>
#include <QRegion>
#include <QWidget>

#include <memory>
#include <optional>

namespace lumenfold {

class PaintingTurns;

/// The toolkit's side of a panel: an override-redirect, translucent raster window that its content view fills. It says
/// when something happens to its native window; what is done about it is the panel's affair.
class PanelWindow : public QWidget {
    Q_OBJECT

public:
    /// `turns` outlives the window.
    PanelWindow(const PanelOptions &options, PaintingTurns &turns);

    void setContent(std::unique_ptr<QWidget> view);

    /// Where the toolkit shall believe a hidden window to be, and the view's size, in the toolkit's coordinates. When
    /// this changes, the toolkit moves the native window there.
    enum class LayOut { same, changed };
    LayOut layOut(const QRect &place);

    /// What to cut the window to when windows do not blend, in pixels: what the view says that it paints, else its
    /// mask, else everything but the transparent margin.
    [[nodiscard]] QRegion contentShape() const;
    /// What gets the pointer, in this widget's coordinates; nothing: all of it, because the view does not say.
    [[nodiscard]] std::optional<QRegion> pointerShape() const;

    /// Shows the window with the server's background alone. It is painted once that had the time to get onto the
    /// screen, or when somebody presses a button on the content.
    void showBeforePainting();

    /// Paints what is to be painted. For those who hold the turns.
    void paintNow();

    /// Makes the native window anew after somebody destroyed it.
    void replaceNativeWindow();

Q_SIGNALS:
    /// There is a new native window, or none (winId 0).
    void nativeWindowChanged();
    /// The window is about to be painted.
    void aboutToPaint();
    /// Only while the window has the focus. The server's own numbers for the key and the modifiers held.
    void keyPressed(quint32 keycode, quint32 state);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void startPainting();
    void takeOverNativeWindow();
    bool nativeWindowEvent(QEvent *event);

    PaintingTurns &m_turns;
    bool m_isItsTurn = false;
    /// Of all of it, because it is being shown or has another size.
    bool m_isPaintingDue = false;
    double m_transparentMargin;
    QPointer<QWidget> m_content;
};

} // namespace lumenfold

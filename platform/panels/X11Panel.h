#pragma once

#include "platform/panels/FocusLoan.h"
#include "platform/panels/Panel.h"
#include "platform/panels/PanelMotion.h"
#include "platform/panels/PanelServer.h"
#include "platform/panels/PanelWindow.h"

#include <QObject>
#include <QRect>
#include <QRegion>

#include <memory>
#include <optional>

namespace lumenfold {

class PanelStage;

/// A panel on X11: an override-redirect window. No window manager has a say in where it is and whether it may take the
/// focus, so it is exactly where it was put, on every workspace, also where "always on top" is not honoured.
class X11Panel : public QObject, public Panel {
    Q_OBJECT

public:
    /// The stage outlives the panel.
    X11Panel(PanelStage &stage, PanelOptions options, const Rect &frame);
    ~X11Panel() override;

    void setContentView(std::unique_ptr<QWidget> view) override;
    [[nodiscard]] Rect frame() const override { return m_motion.frame(); }
    void setFrame(const Rect &frame) override;
    [[nodiscard]] double alpha() const override { return m_motion.alpha(); }
    void setAlpha(double alpha) override;
    void animate(PanelAnimation animation) override;
    [[nodiscard]] bool isVisible() const override { return m_visible; }
    void orderFrontRegardless() override;
    void orderOut() override;
    void makeKey() override;
    void setKeyHandler(std::function<bool(const KeyEvent &)> handler) override;
    void setCursor(CursorShape shape) override;

    /// For the stage.
    void markChanged() { m_changed = true; }
    /// Sends what has changed to the server, without flushing.
    void commit();
    /// True while there is more to come.
    bool advance(PanelMotion::TimePoint now, PanelMotion::Completions &completed);
    [[nodiscard]] std::weak_ptr<const void> lifeToken() const { return m_life; }
    void translucencyChanged();
    /// Somebody else destroyed the native window.
    void nativeWindowLost();

private:
    void nativeWindowChanged();
    void keyPressed(const KeyEvent &event);
    void toolkitKeyPressed(std::uint32_t keycode, std::uint32_t state);
    [[nodiscard]] bool shouldBeMapped() const;
    void syncMapping();
    void takeFocus();
    void map();
    void unmap();
    void syncPlace();
    void syncBackground();
    void syncOpacity();
    void syncShape();

    PanelStage &m_stage;
    PanelOptions m_options;
    PanelMotion m_motion;
    bool m_visible = false;
    bool m_changed = false;
    std::unique_ptr<PanelWindow> m_window;
    std::function<bool(const KeyEvent &)> m_keyHandler;
    std::shared_ptr<const int> m_life = std::make_shared<const int>(0);

    /// The native window and what the server was last told about it; nothing known about a new one.
    std::uint32_t m_native = 0;
    std::optional<QRect> m_pixels;
    std::optional<double> m_opacity;
    std::optional<QRegion> m_shape;
    std::optional<QRegion> m_pointerShape;
    /// The panel is key, and no tap gives it the keys.
    bool m_keysNeedFocus = false;
    /// While the panel has the focus for want of a tap.
    std::optional<FocusLoan> m_focus;
};

} // namespace lumenfold

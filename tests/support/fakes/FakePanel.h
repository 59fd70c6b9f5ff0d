#pragma once

#include "platform/mainqueue/MainQueue.h"
#include "platform/panels/Panel.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace lumenfold::test {

class FakePanelFactory;

/// A panel that exists on paper. An animated value stands at its start for the first half of the duration, half-way for
/// the second half, and at its end from then on; time is the queue's.
class FakePanel : public Panel {
public:
    FakePanel(FakePanelFactory &factory, PanelOptions options, const Rect &frame);
    ~FakePanel() override;

    void setContentView(std::unique_ptr<QWidget> view) override;
    [[nodiscard]] Rect frame() const override;
    void setFrame(const Rect &frame) override;
    [[nodiscard]] double alpha() const override;
    void setAlpha(double alpha) override;
    void animate(PanelAnimation animation) override;
    [[nodiscard]] bool isVisible() const override;
    void orderFrontRegardless() override;
    void orderOut() override;
    void makeKey() override;
    void setKeyHandler(std::function<bool(const KeyEvent &)> handler) override;
    void setCursor(CursorShape shape) override;

    [[nodiscard]] const PanelOptions &options() const { return m_options; }
    [[nodiscard]] QWidget *contentView() const { return m_view.get(); }
    /// Everything that was animated, oldest first; without the completion handlers.
    [[nodiscard]] const std::vector<PanelAnimation> &animations() const { return m_animations; }
    /// Every frame that was set without an animation, oldest first.
    [[nodiscard]] const std::vector<Rect> &framesSet() const { return m_framesSet; }
    [[nodiscard]] int orderFrontCount() const { return m_orderFrontCount; }
    /// Whether it was key when it was last ordered front.
    [[nodiscard]] bool hadKeysWhenShown() const { return m_hadKeysWhenShown; }
    [[nodiscard]] int orderOutCount() const { return m_orderOutCount; }
    [[nodiscard]] CursorShape cursor() const { return m_cursor; }

    /// Gives the key to the panel's handler as if the panel were key; false when there is no handler or it does not
    /// use the event.
    bool pressKey(const KeyEvent &event);

    /// Forgets what was recorded, not where the panel stands.
    void forgetHistory();

private:
    /// The running animation of one property; replaced as a whole when another begins.
    struct Run;

    FakePanelFactory &m_factory;
    PanelOptions m_options;
    Rect m_frame;
    double m_alpha = 1;
    bool m_visible = false;
    bool m_hadKeysWhenShown = false;
    CursorShape m_cursor = CursorShape::arrow;
    std::unique_ptr<QWidget> m_view;
    std::function<bool(const KeyEvent &)> m_keyHandler;
    std::shared_ptr<Run> m_frameRun;
    std::shared_ptr<Run> m_alphaRun;
    std::vector<PanelAnimation> m_animations;
    std::vector<Rect> m_framesSet;
    int m_orderFrontCount = 0;
    int m_orderOutCount = 0;
};

/// Makes fake panels and knows which of them are on screen, in which order.
class FakePanelFactory : public PanelFactory {
public:
    explicit FakePanelFactory(MainQueue &queue);
    ~FakePanelFactory() override;

    [[nodiscard]] std::unique_ptr<Panel> makePanel(const PanelOptions &options, const Rect &frame) override;
    [[nodiscard]] bool isTranslucencyAvailable() const override { return m_translucencyAvailable; }

    void setTranslucencyAvailable(bool available) { m_translucencyAvailable = available; }

    /// Every panel that lives, in the order in which they were made.
    [[nodiscard]] const std::vector<FakePanel *> &panels() const { return m_panels; }
    /// The newest panel that lives; null when there is none.
    [[nodiscard]] FakePanel *lastPanel() const;
    /// The panels on screen from back to front; a panel of a higher level stands above those of a lower one.
    [[nodiscard]] std::vector<FakePanel *> stacking() const;
    /// The panel that gets the keys; null when none does.
    [[nodiscard]] FakePanel *keyPanel() const { return m_keyPanel; }

private:
    friend class FakePanel;

    MainQueue &m_queue;
    bool m_translucencyAvailable = true;
    std::vector<FakePanel *> m_panels;
    std::vector<FakePanel *> m_ordered;
    FakePanel *m_keyPanel = nullptr;
};

} // namespace lumenfold::test

/// How long the column takes to lay out its cards, besides what the panels do when they are moved: the panels here move
/// at once and for nothing.
#include "app/configuration/AppConfig.h"
#include "cards/PreviewWindowController.h"

#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QWidget>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

namespace lumenfold {
namespace {

class WeightlessPanel : public Panel {
public:
    void setContentView(std::unique_ptr<QWidget>) override {}
    [[nodiscard]] Rect frame() const override { return m_frame; }
    void setFrame(const Rect &frame) override { m_frame = frame; }
    [[nodiscard]] double alpha() const override { return 1; }
    void setAlpha(double) override {}
    void animate(PanelAnimation animation) override { m_frame = animation.frame.value_or(m_frame); }
    [[nodiscard]] bool isVisible() const override { return m_visible; }
    void orderFrontRegardless() override { m_visible = true; }
    void orderOut() override { m_visible = false; }
    void makeKey() override {}
    void setKeyHandler(std::function<bool(const KeyEvent &)>) override {}
    void setCursor(CursorShape) override {}

private:
    Rect m_frame;
    bool m_visible = false;
};

class WeightlessPanels : public PanelFactory {
public:
    [[nodiscard]] std::unique_ptr<Panel> makePanel(const PanelOptions &, const Rect &) override
    {
        return std::make_unique<WeightlessPanel>();
    }
    [[nodiscard]] bool isTranslucencyAvailable() const override { return true; }
};

class Column {
public:
    explicit Column(int count)
    {
        for (int index = 0; index < count; ++index) {
            m_controller.show(Image::withoutRepresentation({1920, 1080}));
        }
        letCoveredPanelsGo();
    }

    PreviewWindowController &controller() { return m_controller; }
    void announceScreens() { Q_EMIT m_screens.changed(); }
    void letCoveredPanelsGo() { m_queue.advance(std::chrono::seconds(1)); }

private:
    test::FakeScreens m_screens;
    test::FakeUserDefaults m_defaults;
    test::FakeFileManager m_files;
    AppConfig m_config{m_defaults, m_screens, m_files};
    test::FakeMainQueue m_queue;
    test::FakeEventMonitors m_monitors;
    test::FakeCardViews m_views;
    WeightlessPanels m_panels;
    PreviewWindowController m_controller{{.panels = m_panels,
                                          .monitors = m_monitors,
                                          .screens = m_screens,
                                          .config = m_config,
                                          .queue = m_queue,
                                          .views = m_views}};
};

/// Nothing has changed: what a new capture costs the cards that stay where they are.
void layoutAtRest(benchmark::State &state)
{
    Column column(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] const auto turn : state) {
        column.announceScreens();
    }
}

/// Every card goes somewhere else, and most of them come back onto the screen.
void layoutWhereEveryCardMoves(benchmark::State &state)
{
    Column column(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] const auto turn : state) {
        column.controller().toggleCollapse();
        state.PauseTiming();
        column.letCoveredPanelsGo();
        state.ResumeTiming();
    }
}

void allFrames(benchmark::State &state)
{
    const StackMetrics metrics{.visibleFrame = Rect{0, 0, 1440, 875}, .cardSize = {170, 128}, .capacity = 6};
    for ([[maybe_unused]] const auto turn : state) {
        benchmark::DoNotOptimize(targetFrames(metrics, {.count = static_cast<int>(state.range(0))}));
    }
}

BENCHMARK(layoutAtRest)->Arg(10)->Arg(500)->Unit(benchmark::kMicrosecond);
BENCHMARK(layoutWhereEveryCardMoves)->Arg(10)->Arg(500)->Unit(benchmark::kMicrosecond);
BENCHMARK(allFrames)->Arg(500)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace lumenfold

BENCHMARK_MAIN();

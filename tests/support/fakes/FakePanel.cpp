#include "tests/support/fakes/FakePanel.h"

#include <algorithm>
#include <utility>

namespace lumenfold::test {
namespace {

Rect halfWay(const Rect &from, const Rect &to)
{
    return {(from.x + to.x) / 2, (from.y + to.y) / 2, (from.width + to.width) / 2, (from.height + to.height) / 2};
}

} // namespace

struct FakePanel::Run {
    std::shared_ptr<ScheduledWork> middle;
    std::shared_ptr<ScheduledWork> end;

    ~Run()
    {
        middle->cancel();
        end->cancel();
    }
};

FakePanel::FakePanel(FakePanelFactory &factory, PanelOptions options, const Rect &frame)
    : m_factory(factory), m_options(std::move(options)), m_frame(frame)
{
    m_factory.m_panels.push_back(this);
}

FakePanel::~FakePanel()
{
    std::erase(m_factory.m_panels, this);
    std::erase(m_factory.m_ordered, this);
    if (m_factory.m_keyPanel == this) {
        m_factory.m_keyPanel = nullptr;
    }
}

void FakePanel::setContentView(std::unique_ptr<QWidget> view)
{
    m_view = std::move(view);
}

Rect FakePanel::frame() const
{
    return m_frame;
}

void FakePanel::setFrame(const Rect &frame)
{
    m_frameRun.reset();
    m_frame = frame;
    m_framesSet.push_back(frame);
}

double FakePanel::alpha() const
{
    return m_alpha;
}

void FakePanel::setAlpha(double alpha)
{
    m_alphaRun.reset();
    m_alpha = alpha;
}

void FakePanel::animate(PanelAnimation animation)
{
    PanelAnimation record = animation;
    record.onCompleted = nullptr;
    m_animations.push_back(record);

    // A group completes when all of its values have arrived; a value that something else takes over never does.
    struct Group {
        std::function<void()> onCompleted;
        int pending = 0;
    };
    const auto group = std::make_shared<Group>();
    group->onCompleted = std::move(animation.onCompleted);
    group->pending = (animation.frame ? 1 : 0) + (animation.alpha ? 1 : 0);

    const auto finish = [group] {
        if (--group->pending == 0 && group->onCompleted) {
            const auto onCompleted = std::move(group->onCompleted);
            onCompleted();
        }
    };
    const auto begin = [this, &animation](auto &value, const auto &middle, const auto &end, auto slot, auto done) {
        auto run = std::make_shared<Run>();
        run->middle = m_factory.m_queue.after(animation.duration / 2, [&value, middle] { value = middle; });
        run->end = m_factory.m_queue.after(animation.duration, [this, &value, end, slot, done] {
            value = end;
            // `done` may destroy the panel.
            const auto keepAlive = std::exchange(this->*slot, nullptr);
            done();
        });
        this->*slot = std::move(run);
    };
    if (animation.frame) {
        m_frameRun.reset();
        begin(m_frame, halfWay(m_frame, *animation.frame), *animation.frame, &FakePanel::m_frameRun, finish);
    }
    if (animation.alpha) {
        m_alphaRun.reset();
        begin(m_alpha, (m_alpha + *animation.alpha) / 2, *animation.alpha, &FakePanel::m_alphaRun, finish);
    }
}

bool FakePanel::isVisible() const
{
    return m_visible;
}

void FakePanel::orderFrontRegardless()
{
    ++m_orderFrontCount;
    m_visible = true;
    m_hadKeysWhenShown = m_factory.m_keyPanel == this;
    std::erase(m_factory.m_ordered, this);
    m_factory.m_ordered.push_back(this);
}

void FakePanel::orderOut()
{
    ++m_orderOutCount;
    m_visible = false;
    std::erase(m_factory.m_ordered, this);
    if (m_factory.m_keyPanel == this) {
        m_factory.m_keyPanel = nullptr;
    }
}

void FakePanel::makeKey()
{
    if (m_options.keyPolicy == PanelKeyPolicy::mayBecomeKey) {
        m_factory.m_keyPanel = this;
    }
}

void FakePanel::setKeyHandler(std::function<bool(const KeyEvent &)> handler)
{
    m_keyHandler = std::move(handler);
}

void FakePanel::setCursor(CursorShape shape)
{
    m_cursor = shape;
}

bool FakePanel::pressKey(const KeyEvent &event)
{
    const auto handler = m_keyHandler;
    return handler && handler(event);
}

void FakePanel::forgetHistory()
{
    m_animations.clear();
    m_framesSet.clear();
    m_orderFrontCount = 0;
    m_orderOutCount = 0;
}

FakePanelFactory::FakePanelFactory(MainQueue &queue) : m_queue(queue) {}

FakePanelFactory::~FakePanelFactory() = default;

std::unique_ptr<Panel> FakePanelFactory::makePanel(const PanelOptions &options, const Rect &frame)
{
    return std::make_unique<FakePanel>(*this, options, frame);
}

FakePanel *FakePanelFactory::lastPanel() const
{
    return m_panels.empty() ? nullptr : m_panels.back();
}

std::vector<FakePanel *> FakePanelFactory::stacking() const
{
    std::vector<FakePanel *> ordered = m_ordered;
    std::ranges::stable_sort(ordered, {}, [](const FakePanel *panel) { return panel->options().level; });
    return ordered;
}

} // namespace lumenfold::test

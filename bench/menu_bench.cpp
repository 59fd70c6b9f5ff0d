/// How long the menu takes to be built anew: what it holds, as the panel reads it over the bus.
#include "platform/statusitem/dbusmenu/DBusMenuModel.h"
#include "tests/support/menubar/MenuStage.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// Answers every question that a panel has about a new menu.
class ReadStatusItem : public StatusItem {
public:
    void setImage(const StatusImage &) override {}
    void setUpdateBadgeVisible(bool) override {}
    void setMenu(Menu menu) override
    {
        m_model.setMenu(std::move(menu));
        benchmark::DoNotOptimize(m_model.layout(DBusMenuModel::root, -1, {}));
    }

private:
    DBusMenuModel m_model;
};

void rebuild(benchmark::State &state)
{
    test::MenuStage stage(std::make_unique<ReadStatusItem>());
    stage.connectAs(QStringLiteral("ada.lovelace@example.org"));
    stage.findUpdate();
    for ([[maybe_unused]] const auto turn : state) {
        stage.rebuild();
    }
}

BENCHMARK(rebuild)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace lumenfold

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

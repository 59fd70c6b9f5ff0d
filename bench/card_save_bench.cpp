/// How long the main thread is away when somebody presses Save on a card of a 4K desktop: the PNG bytes are there
/// already, in memory for a card of this moment, in the card's own file for every other.
#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "bench/DesktopPicture.h"
#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <stdexcept>

namespace lumenfold {
namespace {

constexpr QSize desktopSize{3840, 2160};

class SaveFolder {
public:
    SaveFolder() { m_files.pictures = m_folder.path(); }

    void save(const Image &image) const
    {
        if (!m_actions.saveToDisk(image)) {
            throw std::runtime_error("the picture cannot be saved");
        }
    }
    [[nodiscard]] QString pathOf(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    test::FakeUserDefaults m_defaults;
    test::FakeScreens m_screens;
    test::FakeFileManager m_files;
    test::FakePasteboard m_pasteboard;
    AppConfig m_config{m_defaults, m_screens, m_files};
    ActionHandler m_actions{m_pasteboard, m_config};
};

Image encodedDesktop()
{
    Image image = Image::fromPixels(bench::desktopPicture(desktopSize));
    (void)image.pngData();
    return image;
}

void saveFreshCard(benchmark::State &state)
{
    const SaveFolder folder;
    const Image image = encodedDesktop();
    for ([[maybe_unused]] const auto turn : state) {
        folder.save(image);
    }
}

void saveStoredCard(benchmark::State &state)
{
    const SaveFolder folder;
    const QString path = folder.pathOf(QStringLiteral("stored.png"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(encodedDesktop().pngData().value()) < 0) {
            throw std::runtime_error("the card cannot be stored");
        }
    }
    const Image image = Image::fromPngFile(path);
    for ([[maybe_unused]] const auto turn : state) {
        folder.save(image);
    }
}

BENCHMARK(saveFreshCard)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(saveStoredCard)->Unit(benchmark::kMillisecond)->Iterations(20);

} // namespace
} // namespace lumenfold

int main(int argc, char **argv)
{
    // Only for the fonts of the painted desktop.
    const lumenfold::test::PrivateFolders ownFolders;
    qputenv("XDG_RUNTIME_DIR", ownFolders.path("runtime").toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

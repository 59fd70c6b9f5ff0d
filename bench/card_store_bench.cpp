/// What keeping two hundred cards costs the thread that asks for it; the writing itself goes on elsewhere and is not in
/// the figures.
#include "cards/CardPersistence.h"
#include "platform/image/PngEncoder.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace lumenfold {
namespace {

constexpr int cardCount = 200;

class StoredCards {
public:
    StoredCards()
    {
        QImage picture(320, 200, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        const QByteArray png = PngEncoder::encodeAndWait(picture).value();
        for (int number = 0; number < cardCount; ++number) {
            m_list.push_back({.id = QStringLiteral("card-%1").arg(number), .editorSourceId = QStringLiteral("source")});
            m_images.push_back(Image::fromPng(png));
        }
    }

    void save()
    {
        for (std::size_t card = 0; card < m_list.size(); ++card) {
            m_store->saveImage(m_images[card], m_list[card].id);
            m_store->saveEditorSourceImage(m_images[card], m_list[card].id);
        }
        m_store->writeManifest(m_list);
    }

    /// With a list after each, as when a user dismisses one after the other.
    void dismissEach()
    {
        std::vector<PersistedCard> left = m_list;
        while (!left.empty()) {
            m_store->deleteImage(left.back().id);
            left.pop_back();
            m_store->writeManifest(left);
        }
    }

    void load()
    {
        for (const PersistedCard &card : m_store->readManifest()) {
            benchmark::DoNotOptimize(m_store->loadImage(card.id));
            benchmark::DoNotOptimize(m_store->loadEditorSourceImage(card.id));
        }
    }

    void finishWriting() { m_store->flush(); }
    void startAgain()
    {
        m_store.reset();
        m_store = std::make_unique<CardPersistence>(m_folder.path());
    }

private:
    QTemporaryDir m_folder;
    std::vector<PersistedCard> m_list;
    std::vector<Image> m_images;
    std::unique_ptr<CardPersistence> m_store = std::make_unique<CardPersistence>(m_folder.path());
};

void saveCards(benchmark::State &state)
{
    StoredCards cards;
    for ([[maybe_unused]] const auto turn : state) {
        cards.save();
        state.PauseTiming();
        cards.finishWriting();
        state.ResumeTiming();
    }
}

void dismissCardsOneByOne(benchmark::State &state)
{
    StoredCards cards;
    for ([[maybe_unused]] const auto turn : state) {
        state.PauseTiming();
        cards.save();
        cards.finishWriting();
        state.ResumeTiming();
        cards.dismissEach();
    }
}

void loadCards(benchmark::State &state)
{
    StoredCards cards;
    cards.save();
    for ([[maybe_unused]] const auto turn : state) {
        state.PauseTiming();
        cards.startAgain();
        state.ResumeTiming();
        cards.load();
    }
}

BENCHMARK(saveCards)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(dismissCardsOneByOne)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(loadCards)->Unit(benchmark::kMillisecond)->Iterations(20);

} // namespace
} // namespace lumenfold

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

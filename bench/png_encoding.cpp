/// How long a whole 4K desktop takes to become a PNG file, ours against the toolkit's, and how large the files are.
/// Both files must hold exactly the pixels that were encoded, else there is nothing to compare and the program fails.
#include "bench/DesktopPicture.h"

#include "platform/image/PngDecoder.h"
#include "platform/image/PngEncoder.h"

#include <QBuffer>
#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <spng.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using lumenfold::PngDecoder;
using lumenfold::PngEncoder;

constexpr auto toolkitName = "QImage::save";
constexpr auto oursName = "PngEncoder";

QByteArray savedByToolkit(const QImage &picture)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return file;
}

QByteArray savedByUs(const QImage &picture)
{
    return PngEncoder::encodeAndWait(picture).value_or(QByteArray());
}

QImage readBySpng(const QByteArray &file)
{
    spng_ctx *context = spng_ctx_new(0);
    spng_set_png_buffer(context, file.constData(), static_cast<std::size_t>(file.size()));
    spng_ihdr header{};
    QImage picture;
    if (spng_get_ihdr(context, &header) == SPNG_OK) {
        picture = QImage(static_cast<int>(header.width), static_cast<int>(header.height), QImage::Format_RGBA8888);
        if (spng_decode_image(context, picture.bits(), static_cast<std::size_t>(picture.sizeInBytes()), SPNG_FMT_RGBA8,
                              0) != SPNG_OK) {
            picture = QImage();
        }
    }
    spng_ctx_free(context);
    return picture.convertToFormat(QImage::Format_RGB32);
}

bool holdsThePicture(const QByteArray &file, const QImage &picture)
{
    return readBySpng(file) == picture &&
           QImage::fromData(file, "PNG").convertToFormat(QImage::Format_RGB32) == picture;
}

/// The usual table, and the shortest time of each benchmark kept for the comparison.
class ComparingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const double milliseconds = run.GetAdjustedRealTime();
                const auto [entry, isNew] = m_shortest.try_emplace(run.run_name.function_name, milliseconds);
                entry->second = std::min(entry->second, milliseconds);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    [[nodiscard]] double shortest(const char *name) const
    {
        const auto entry = m_shortest.find(name);
        return entry == m_shortest.end() ? 0 : entry->second;
    }

private:
    std::map<std::string, double> m_shortest;
};

/// `work` returns the size of the file that it made or read.
void registerBenchmark(const char *name, int iterations, std::function<qsizetype()> work)
{
    benchmark::RegisterBenchmark(name,
                                 [work = std::move(work)](benchmark::State &state) {
                                     qsizetype bytes = 0;
                                     for (auto _ : state) {
                                         bytes = work();
                                     }
                                     state.counters["bytes"] = static_cast<double>(bytes);
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->MeasureProcessCPUTime()
        ->Iterations(iterations)
        ->Repetitions(5);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    QGuiApplication application(argc, argv);

    const QImage picture = lumenfold::bench::desktopPicture({3840, 2160});
    const QByteArray toolkit = savedByToolkit(picture);
    const QByteArray ours = savedByUs(picture);
    if (!holdsThePicture(toolkit, picture) || !holdsThePicture(ours, picture)) {
        std::fputs("a file does not hold the picture that was encoded\n", stderr);
        return 1;
    }

    registerBenchmark(toolkitName, 1, [&] { return savedByToolkit(picture).size(); });
    registerBenchmark(oursName, 10, [&] { return savedByUs(picture).size(); });
    registerBenchmark("PngDecoder", 3, [&] {
        benchmark::DoNotOptimize(PngDecoder::decode(ours));
        return ours.size();
    });
    ComparingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    const double shortestOfToolkit = reporter.shortest(toolkitName);
    const double shortestOfOurs = reporter.shortest(oursName);
    if (shortestOfToolkit > 0 && shortestOfOurs > 0) {
        std::printf("%s is %.1f times as fast as %s; its file is %.3f times as large (%lld against %lld bytes).\n",
                    oursName, shortestOfToolkit / shortestOfOurs, toolkitName,
                    static_cast<double>(ours.size()) / static_cast<double>(toolkit.size()),
                    static_cast<long long>(ours.size()), static_cast<long long>(toolkit.size()));
    }
    return 0;
}

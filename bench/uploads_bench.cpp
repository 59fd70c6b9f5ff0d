/// What uploading costs: how long the main thread is kept busy at most, and how much memory twenty uploads take, over
/// HTTPS, to a double of the service in a process of its own.
#include "bench/DesktopPicture.h"

#include "platform/image/PngEncoder.h"
#include "service/HttpLumenfoldService.h"
#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/service/Certificates.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lumenfold::bench {
namespace {

using namespace std::chrono_literals;
using namespace lumenfold::test;

constexpr int cards = 20;
constexpr double megabyte = 1e6;

/// Knows how long the main thread was busy at a stretch, which is with one event, or with the call that begins an
/// upload.
class WatchedApplication : public QGuiApplication {
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (QThread::currentThread() != thread()) {
            return QGuiApplication::notify(receiver, event);
        }
        bool result = false;
        watch([&] { result = QGuiApplication::notify(receiver, event); });
        return result;
    }

    void watch(const std::function<void()> &work)
    {
        QElapsedTimer time;
        time.start();
        work();
        m_longest = std::max(m_longest, static_cast<double>(time.nsecsElapsed()) / 1e6);
    }

    /// The longest since the last call, in milliseconds.
    [[nodiscard]] double takeLongestStay() { return std::exchange(m_longest, 0.0); }

private:
    double m_longest = 0;
};

/// The double in a process of its own.
class OtherProcess {
public:
    OtherProcess()
    {
        const ServerIdentity identity = m_authority.identityFor(QStringLiteral("127.0.0.1"));
        write(QStringLiteral("certificate"), identity.certificate);
        write(QStringLiteral("key"), identity.key);
        m_process.emplace(
            ProcessOptions{.program = QStringLiteral(LUMENFOLD_SERVICE_DOUBLE_PROGRAM),
                           .arguments = {QStringLiteral("--forget"), QStringLiteral("--certificate"),
                                         m_folder.filePath(QStringLiteral("certificate")), QStringLiteral("--key"),
                                         m_folder.filePath(QStringLiteral("key"))},
                           .logFile = m_folder.filePath(QStringLiteral("log"))});
        waitUntil("the double's address", [this] { return m_process->log().count('\n') >= 2; });
    }

    [[nodiscard]] QString address() const { return QString::fromUtf8(m_process->log().split('\n').first()); }
    [[nodiscard]] QByteArray authority() const { return m_authority.certificate(); }

private:
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            throw std::runtime_error("cannot write the certificate");
        }
    }

    CertificateAuthority m_authority;
    QTemporaryDir m_folder;
    std::optional<Process> m_process;
};

/// A line of /proc/self/status, in bytes.
qint64 memory(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name)) {
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    return 0;
}

void forgetMemoryPeak()
{
    QFile peak(QStringLiteral("/proc/self/clear_refs"));
    if (peak.open(QIODevice::WriteOnly)) {
        peak.write("5");
    }
}

QCoro::Task<> upload(HttpLumenfoldService &service, Image image, int &done)
{
    co_await service.save(std::move(image));
    ++done;
}

int run(WatchedApplication &application)
{
    const OtherProcess online;
    FakeAccount account;
    account.putKey("demo-key");
    account.useService(QUrl(online.address()));
    FakeWorkspace workspace;
    const FakeTemplateSelection templates;
    HttpClient http({.additionalAuthorities = online.authority()});
    HttpLumenfoldService service(
        {.http = http, .auth = account.auth, .config = account.config, .workspace = workspace, .templates = templates});

    const QByteArray png = PngEncoder::encodeAndWait(desktopPicture({3840, 2160})).value();
    std::printf("the PNG of a 4K desktop: %.1f MB\n", static_cast<double>(png.size()) / megabyte);

    for (const char *which : {"first upload (the network library begins)", "second upload"}) {
        int done = 0;
        QElapsedTimer time;
        time.start();
        (void)application.takeLongestStay();
        application.watch([&] { upload(service, Image::fromPng(png), done); });
        waitUntil(
            "the upload", [&done] { return done == 1; }, 60s);
        std::printf("%s: %.0f ms; the main thread at a stretch at most %.2f ms (bar 20)\n", which,
                    static_cast<double>(time.nsecsElapsed()) / 1e6, application.takeLongestStay());
    }

    forgetMemoryPeak();
    const qint64 before = memory("VmRSS:");
    std::vector<Image> images;
    for (int card = 0; card < cards; ++card) {
        images.push_back(Image::fromPng(QByteArray(png.constData(), png.size())));
    }
    int done = 0;
    (void)application.takeLongestStay();
    for (const Image &image : images) {
        application.watch([&] { upload(service, image, done); });
    }
    waitUntil(
        "all uploads", [&done] { return done == cards; }, 120s);
    const double grown = static_cast<double>(memory("VmHWM:") - before) / megabyte;
    const double bar = static_cast<double>(cards * png.size()) / megabyte + 20;
    std::printf(
        "%d cards at once: the main thread at a stretch at most %.2f ms; memory, the pictures included, grew by "
        "%.1f MB (bar %.1f)\n",
        cards, application.takeLongestStay(), grown, bar);
    return 0;
}

} // namespace
} // namespace lumenfold::bench

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    lumenfold::bench::WatchedApplication application(argc, argv);
    try {
        return lumenfold::bench::run(application);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

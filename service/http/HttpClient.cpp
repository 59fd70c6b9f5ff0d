#include "service/http/HttpClient.h"

#include "service/http/HttpThread.h"

#include <QThread>

#include <algorithm>
#include <coroutine>
#include <utility>

namespace lumenfold {
namespace {

bool canBeSent(const HttpRequest &request)
{
    // The library would also write files and read the program's resources, if an address said so.
    const QString scheme = request.address.scheme();
    const bool leadsToServer = scheme == QStringView(u"https") || scheme == QStringView(u"http");
    return leadsToServer && request.address.isValid() && !request.address.host().isEmpty() &&
           std::ranges::all_of(request.headers, [](const HttpHeader &header) {
               return isHeaderValue(header.name) && isHeaderValue(header.value);
           });
}

} // namespace

/// A coroutine that waits for its answer.
struct HttpClient::Waiting {
    std::coroutine_handle<> coroutine;
    std::optional<HttpOutcome> outcome;

    void end(HttpOutcome with)
    {
        outcome = std::move(with);
        if (coroutine) {
            coroutine.resume();
        }
    }
};

struct HttpClient::Ending {
    std::shared_ptr<Waiting> waiting;

    [[nodiscard]] bool await_ready() const noexcept { return waiting->outcome.has_value(); }
    void await_suspend(std::coroutine_handle<> coroutine) const { waiting->coroutine = coroutine; }
    [[nodiscard]] HttpOutcome await_resume() const { return std::move(*waiting->outcome); }
};

HttpClient::HttpClient() : HttpClient(Options{}) {}

HttpClient::HttpClient(const Options &options) : m_options(options) {}

HttpClient::~HttpClient()
{
    m_closing = true;
    if (m_thread) {
        m_thread->quit();
        m_thread->wait();
    }
    for (const auto &[number, waiting] : std::exchange(m_waiting, {})) {
        waiting->end(tl::unexpected(TransportError(TransportError::Kind::cancelled)));
    }
}

QCoro::Task<HttpAnswer> HttpClient::send(HttpRequest request, QObject *owner)
{
    Ending ending{begin(request, owner)};
    HttpOutcome outcome = co_await ending;
    if (!outcome) {
        throw outcome.error();
    }
    co_return std::move(*outcome);
}

std::shared_ptr<HttpClient::Waiting> HttpClient::begin(const HttpRequest &request, QObject *owner)
{
    auto waiting = std::make_shared<Waiting>();
    if (m_closing || !canBeSent(request)) {
        using Kind = TransportError::Kind;
        waiting->end(tl::unexpected(TransportError(m_closing ? Kind::cancelled : Kind::refused)));
        return waiting;
    }
    const quint64 number = ++m_last;
    m_waiting.emplace(number, waiting);
    HttpThread &worker = thread();
    QMetaObject::invokeMethod(&worker, [&worker, number, request] { worker.begin(number, request); });
    if (owner != nullptr) {
        // Later, because the owner is half gone while it says so.
        QObject::connect(
            owner, &QObject::destroyed, &m_here, [this, number] { cancel(number); }, Qt::QueuedConnection);
    }
    return waiting;
}

void HttpClient::finish(quint64 number, HttpOutcome outcome)
{
    auto entry = m_waiting.extract(number);
    // Called off meanwhile.
    if (!entry.empty()) {
        entry.mapped()->end(std::move(outcome));
    }
}

void HttpClient::cancel(quint64 number)
{
    if (m_waiting.contains(number)) {
        QMetaObject::invokeMethod(m_onThread, [worker = m_onThread, number] { worker->cancel(number); });
        finish(number, tl::unexpected(TransportError(TransportError::Kind::cancelled)));
    }
}

HttpThread &HttpClient::thread()
{
    if (m_onThread == nullptr) {
        m_onThread = new HttpThread(
            {.authoritiesPem = m_options.additionalAuthorities, .keepConnections = m_options.keepConnections},
            [this](quint64 number, const HttpOutcome &outcome) {
                QMetaObject::invokeMethod(&m_here, [this, number, outcome] { finish(number, outcome); });
            });
        m_thread = std::make_unique<QThread>();
        m_thread->setObjectName(QStringLiteral("Network"));
        m_onThread->moveToThread(m_thread.get());
        QObject::connect(m_thread.get(), &QThread::finished, m_onThread, &QObject::deleteLater);
        m_thread->start();
    }
    return *m_onThread;
}

} // namespace lumenfold

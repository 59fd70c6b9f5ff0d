#include "tests/components/http/HttpClientFixture.h"

#include "tests/support/desktop/Wait.h"

#include <QThread>

namespace lumenfold::test {
namespace {

QCoro::Task<> note(HttpClient &client, HttpRequest request, QObject *owner, std::shared_ptr<Ended> ended)
{
    const QThread *const asked = QThread::currentThread();
    try {
        HttpAnswer answer = co_await client.send(std::move(request), owner);
        ended->answer = std::move(answer);
    } catch (const TransportError &error) {
        ended->error = error;
    }
    ended->onSameThread = QThread::currentThread() == asked;
}

} // namespace

std::shared_ptr<Ended> HttpClientTest::begin(const HttpRequest &request, QObject *owner) const
{
    auto ended = std::make_shared<Ended>();
    note(*client, request, owner, ended);
    return ended;
}

Ended HttpClientTest::send(const HttpRequest &request) const
{
    const auto ended = begin(request);
    EXPECT_TRUE(waitFor([&] { return ended->isThere(); }));
    return *ended;
}

HttpClientTest::Kind HttpClientTest::failureOf(const HttpRequest &request) const
{
    const Ended ended = send(request);
    EXPECT_FALSE(ended.answer) << ended.answer->status << ' ' << ended.answer->body.left(100).constData();
    return ended.error.value_or(TransportError(Kind::other)).kind();
}

HttpRequest HttpClientTest::get(const QString &path) const
{
    return {.address = service.url(path)};
}

HttpRequest HttpClientTest::put(const QByteArray &body) const
{
    return {.address = service.url(QStringLiteral("/storage/a.png?signature=s")),
            .method = HttpMethod::put,
            .headers = {{"Content-Type", "image/png"}},
            .body = body};
}

} // namespace lumenfold::test

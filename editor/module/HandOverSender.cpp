#include "editor/module/HandOverSender.h"

#include "editor/bridge/EditorOrigin.h"

#include <QIODevice>
#include <QPointer>
#include <QUuid>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

#include <algorithm>
#include <cstring>
#include <utility>

namespace lumenfold {
namespace {

/// A text that is read once, by a thread of the engine's, which also gives its memory back: for an 8K screenshot that
/// would keep the main thread for many milliseconds.
class TextOnce : public QIODevice {
public:
    explicit TextOnce(QByteArray text) : m_text(std::move(text)), m_size(m_text.size())
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] qint64 size() const override { return m_size; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 bytes = std::min(most, m_text.size() - m_read);
        std::memcpy(data, m_text.constData() + m_read, static_cast<std::size_t>(bytes));
        m_read += bytes;
        if (m_read == m_text.size()) {
            m_text.clear();
            m_read = 0;
        }
        return bytes;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_text;
    const qint64 m_size;
    qint64 m_read = 0;
};

} // namespace

void HandOverSender::registerScheme()
{
    QWebEngineUrlScheme ours(QByteArray(scheme.data(), scheme.size()));
    ours.setSyntax(QWebEngineUrlScheme::Syntax::Path);
    // The page's own policy is for what the page loads; and it is a secure page's partner.
    ours.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled |
                  QWebEngineUrlScheme::ContentSecurityPolicyIgnored);
    QWebEngineUrlScheme::registerScheme(ours);
}

HandOverSender::HandOverSender(QWebEnginePage &page) : m_page(page)
{
    page.profile()->installUrlSchemeHandler(QByteArray(scheme.data(), scheme.size()), this);
}

HandOverSender::~HandOverSender() = default;

void HandOverSender::send(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
                          std::function<bool()> isWanted, std::function<void(QString trouble)> done)
{
    const int number = ++m_count;
    const QString address = scheme + u':' + QUuid::createUuid().toString(QUuid::Id128);
    m_transfer = {.number = number,
                  .address = QUrl(address),
                  .dataURL = dataURL,
                  .origin = QUrl(origin),
                  .isWanted = std::move(isWanted),
                  .done = std::move(done)};
    if (!m_transfer.isWanted()) {
        end(QStringLiteral("the page was left meanwhile"));
        return;
    }
    // JSON is an expression of the language; an origin has no sign that means something in a string (see editorOrigin).
    const QString script = QStringLiteral("(function () { try { window.lumenfoldHandOver(") + QString::number(number) +
                           QStringLiteral(", '") + address + QStringLiteral("', ") + QString::fromUtf8(members) +
                           QStringLiteral(", '") + origin +
                           QStringLiteral("'); return ''; } catch (error) { return String(error); } })()");
    m_page.runJavaScript(
        script, QWebEngineScript::ApplicationWorld, [self = QPointer(this), number](const QVariant &result) {
            const bool isAnswer = result.typeId() == QMetaType::QString;
            const QString trouble = isAnswer ? result.toString() : QStringLiteral("the page does not answer");
            if (self && !trouble.isEmpty()) {
                self->noteEnd(number, trouble);
            }
        });
}

bool HandOverSender::isExpected(const QWebEngineUrlRequestJob &job) const
{
    return !m_transfer.address.isEmpty() && job.requestUrl() == m_transfer.address && job.requestMethod() == "GET" &&
           isTrustedAddress(job.initiator(), m_transfer.origin) && m_transfer.isWanted();
}

void HandOverSender::requestStarted(QWebEngineUrlRequestJob *job)
{
    if (!isExpected(*job)) {
        job->fail(QWebEngineUrlRequestJob::RequestDenied);
        return;
    }
    m_transfer.address.clear();
    auto *text = new TextOnce(std::exchange(m_transfer.dataURL, {}));
    // Until then the engine reads it.
    connect(job, &QObject::destroyed, text, &QObject::deleteLater);
    job->reply("text/plain", text);
}

void HandOverSender::noteEnd(int number, const QString &trouble)
{
    if (m_transfer.done && m_transfer.number == number) {
        end(trouble);
    }
}

void HandOverSender::noteDocument()
{
    if (m_transfer.done) {
        end(QStringLiteral("the page was left meanwhile"));
    }
}

void HandOverSender::end(const QString &trouble)
{
    const Transfer ended = std::exchange(m_transfer, {});
    ended.done(trouble);
}

} // namespace lumenfold

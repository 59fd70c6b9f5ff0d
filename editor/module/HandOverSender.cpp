#include "editor/module/HandOverSender.h"

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <utility>

namespace lumenfold {
namespace {

/// Takes the main thread one or two milliseconds.
constexpr qsizetype pieceBytes = qsizetype{1024} * 1024;

} // namespace

HandOverSender::HandOverSender(QWebEnginePage &page) : m_page(page) {}

void HandOverSender::send(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
                          std::function<bool()> isWanted, std::function<void(QString trouble)> done)
{
    m_transfer = {.number = ++m_count,
                  .dataURL = dataURL,
                  .origin = origin,
                  .isWanted = std::move(isWanted),
                  .done = std::move(done)};
    // JSON is an expression of the language; an origin has no sign that means something in a string (see editorOrigin).
    call(QStringLiteral("begin(%1, ").arg(m_transfer.number) + QString::fromUtf8(members) + QStringLiteral(", '") +
             origin + QStringLiteral("')"),
         [this] { sendNext(); });
}

void HandOverSender::sendNext()
{
    const QString number = QString::number(m_transfer.number);
    if (m_transfer.sent < m_transfer.dataURL.size()) {
        // A data address is base64, and a piece of it a string as it stands.
        const QByteArrayView piece =
            QByteArrayView(m_transfer.dataURL)
                .sliced(m_transfer.sent, std::min(pieceBytes, m_transfer.dataURL.size() - m_transfer.sent));
        m_transfer.sent += piece.size();
        call(QStringLiteral("add(") + number + QStringLiteral(", '") + QString::fromLatin1(piece) +
                 QStringLiteral("')"),
             [this] { sendNext(); });
        return;
    }
    call(QStringLiteral("end(") + number + QStringLiteral(", '") + m_transfer.origin + QStringLiteral("')"),
         [this] { end({}); });
}

void HandOverSender::call(const QString &call, std::function<void()> next)
{
    if (!m_transfer.isWanted()) {
        end(QStringLiteral("the page was left meanwhile"));
        return;
    }
    const QString script = QStringLiteral("(function () { try { window.lumenfoldHandOver.") + call +
                           QStringLiteral("; return ''; } catch (error) { return String(error); } })()");
    m_page.runJavaScript(
        script, QWebEngineScript::ApplicationWorld,
        [self = QPointer(this), number = m_transfer.number, next = std::move(next)](const QVariant &result) {
            if (!self || self->m_transfer.number != number) {
                return;
            }
            if (result.typeId() != QMetaType::QString) {
                self->end(QStringLiteral("the page does not answer"));
            } else if (const QString trouble = result.toString(); !trouble.isEmpty()) {
                self->end(trouble);
            } else {
                next();
            }
        });
}

void HandOverSender::end(const QString &trouble)
{
    const Transfer ended = std::exchange(m_transfer, {});
    if (ended.done) {
        ended.done(trouble);
    }
}

} // namespace lumenfold

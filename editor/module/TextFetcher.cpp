#include "editor/module/TextFetcher.h"

#include <QPointer>
#include <QVariant>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

/// Takes the main thread one or two milliseconds.
constexpr qsizetype partLength = qsizetype{1024} * 1024;
/// While one part is taken, the next is made.
constexpr int partsUnderWay = 2;

} // namespace

TextFetcher::TextFetcher(QWebEnginePage &page) : m_page(page) {}

void TextFetcher::fetch(const EditorView::LongText &text, std::function<bool()> isWanted,
                        std::function<void(std::optional<QByteArrayList> parts)> done)
{
    ++m_count;
    m_fetching = {.text = text, .isWanted = std::move(isWanted), .done = std::move(done)};
    for (int part = 0; part < partsUnderWay; ++part) {
        askForNext();
    }
}

void TextFetcher::askForNext()
{
    if (!m_fetching.done || m_fetching.asked >= m_fetching.text.length) {
        return;
    }
    if (!m_fetching.isWanted()) {
        end(std::nullopt);
        return;
    }
    // The name of a document comes from there as well and is no more than a string.
    const QString call =
        QStringLiteral("window.lumenfoldMessages ? window.lumenfoldMessages.part('%1', %2, %3, %4) : null")
            .arg(QString::fromLatin1(m_fetching.text.document.toUtf8().toPercentEncoding()))
            .arg(m_fetching.text.message)
            .arg(m_fetching.asked)
            .arg(partLength);
    m_fetching.asked += partLength;
    m_page.runJavaScript(call, QWebEngineScript::ApplicationWorld,
                         [self = QPointer(this), number = m_count](const QVariant &result) {
                             if (self && self->m_count == number && self->m_fetching.done) {
                                 self->takePart(result);
                             }
                         });
}

void TextFetcher::takePart(const QVariant &result)
{
    const QByteArray part = result.toByteArray();
    const qsizetype expected = std::min(partLength, m_fetching.text.length - m_fetching.received);
    if (result.typeId() != QMetaType::QByteArray || part.size() < expected) {
        end(std::nullopt);
        return;
    }
    m_fetching.parts.append(part);
    m_fetching.received += expected;
    const bool isAscii = part.size() == expected;
    if (!isAscii || m_fetching.received == m_fetching.text.length) {
        end(std::exchange(m_fetching.parts, {}));
    } else {
        askForNext();
    }
}

void TextFetcher::end(std::optional<QByteArrayList> parts)
{
    const Fetching ended = std::exchange(m_fetching, {});
    m_page.runJavaScript(QStringLiteral("window.lumenfoldMessages && window.lumenfoldMessages.end('%1', %2)")
                             .arg(QString::fromLatin1(ended.text.document.toUtf8().toPercentEncoding()))
                             .arg(ended.text.message),
                         QWebEngineScript::ApplicationWorld);
    ended.done(std::move(parts));
}

} // namespace lumenfold

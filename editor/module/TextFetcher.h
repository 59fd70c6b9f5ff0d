#pragma once

#include "editor/EditorView.h"

#include <QByteArrayList>
#include <QObject>

#include <functional>
#include <optional>

class QWebEnginePage;

namespace lumenfold {

/// Fetches long texts from our script in the page (courier.js), part by part. The engine hands bytes over as they are,
/// at a millisecond of the main thread for each million; as strings, or by way of the channel, they would take ten
/// times as long.
class TextFetcher : public QObject {
    Q_OBJECT

public:
    /// The page outlives the fetcher.
    explicit TextFetcher(QWebEnginePage &page);

    /// As in EditorView::fetchText.
    void fetch(const EditorView::LongText &text, std::function<bool()> isWanted,
               std::function<void(std::optional<QByteArrayList> parts)> done);

private:
    struct Fetching {
        EditorView::LongText text;
        qsizetype asked = 0;
        qsizetype received = 0;
        QByteArrayList parts;
        std::function<bool()> isWanted;
        std::function<void(std::optional<QByteArrayList> parts)> done;
    };

    void askForNext();
    void takePart(const QVariant &result);
    void end(std::optional<QByteArrayList> parts);

    QWebEnginePage &m_page;
    Fetching m_fetching;
    int m_count = 0;
};

} // namespace lumenfold

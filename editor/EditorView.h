#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QColor>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <tl/expected.hpp>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace lumenfold {

/// A file that the page offers, by other means than a data address. Nothing of it stays unless it is saved.
class OfferedFile {
public:
    OfferedFile() = default;
    OfferedFile(const OfferedFile &) = delete;
    OfferedFile &operator=(const OfferedFile &) = delete;
    /// Without a word it is refused.
    virtual ~OfferedFile() = default;

    [[nodiscard]] virtual QUrl address() const = 0;
    [[nodiscard]] virtual QString mimeType() const = 0;
    /// As the page would name it; empty if it has no name for it. A name, not a path.
    [[nodiscard]] virtual QString suggestedName() const = 0;
    /// Calls `done` with the path of a file that holds all of it and goes with this object, or with the reason why
    /// there is none; once, and not at all when the view goes first. This object lives until then if `done` holds it.
    virtual void fetch(std::function<void(tl::expected<QString, QString> path)> done) = 0;
};

enum class NavigationKind { linkClicked, other };

/// Why the view shows nothing.
enum class ViewTrouble {
    unreachable,
    /// The server could not prove who it is.
    untrustedServer,
    /// The page's process is gone.
    ended,
};

/// What the view tells, and asks. Main thread.
class EditorViewClient {
public:
    EditorViewClient() = default;
    EditorViewClient(const EditorViewClient &) = delete;
    EditorViewClient &operator=(const EditorViewClient &) = delete;
    virtual ~EditorViewClient() = default;

    /// The main frame has another document from now on: the page, or what else the server sent.
    virtual void documentCreated() = 0;
    /// From our own script in the main frame: a message, or that there is one whose text is long. True when it is
    /// fetched (EditorView::fetchText), for which that script waits.
    [[nodiscard]] virtual bool messageReceived(const QJsonObject &message) = 0;
    /// Whether a frame may go there.
    [[nodiscard]] virtual bool allowsNavigation(const QUrl &address, NavigationKind kind) = 0;
    /// The page wants another window with that. There will be none.
    virtual void newWindowRequested(const QUrl &address) = 0;
    virtual void fileOffered(std::unique_ptr<OfferedFile> file) = 0;
    /// Has the user choose files for the page, and waits for that in an event loop of its own, because the web engine
    /// waits as well. The view is not to be destroyed meanwhile.
    [[nodiscard]] virtual QStringList chooseFiles(bool several) = 0;
    virtual void failed(ViewTrouble trouble, const QString &reason) = 0;
};

/// The editor's page, as the module with the web engine shows it. No permission is ever given to the page, no
/// certificate that does not hold is accepted, and nothing of it is kept on the disk. Main thread.
class EditorView {
public:
    struct Options {
        /// Run in the main frame of every document before anything of the page.
        QString bridgeScript{};
        QString loadingBackgroundScript{};
        /// The messages that a page can send.
        QStringList messageNames{};
        QColor background{};
    };

    EditorView() = default;
    EditorView(const EditorView &) = delete;
    EditorView &operator=(const EditorView &) = delete;
    virtual ~EditorView() = default;

    /// Owned by the widget that it was made in, or by this object if that one lives longer.
    [[nodiscard]] virtual QWidget *widget() const = 0;
    /// Of the document that is shown now; empty before the first.
    [[nodiscard]] virtual QUrl address() const = 0;
    virtual void load(const QUrl &address) = 0;
    virtual void stop() = 0;
    /// Posts the message to the page's window as coming from and meant for `origin`: the members (a JSON object), and
    /// `dataURL` as `src`. Asks `isWanted` when it begins and when the page fetches the picture. `done` is called with
    /// what went wrong; empty if nothing did. A hand-over in place of one that goes on ends that.
    virtual void handOver(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
                          std::function<bool()> isWanted, std::function<void(QString trouble)> done) = 0;

    /// A long text that our script in the page has told of.
    struct LongText {
        /// A document of the page, and which of its messages.
        QString document{};
        int message = 0;
        /// In characters.
        qsizetype length = 0;
    };
    /// Fetches the text in parts of a moment each. Asks `isWanted` before every part. `done` is called with its parts
    /// in UTF-8, or with nothing when it is not to be had any more. A text with other than ASCII characters, which is
    /// no picture, ends with the part that has them. A text in place of one that is being fetched ends that.
    virtual void fetchText(const LongText &text, std::function<bool()> isWanted,
                           std::function<void(std::optional<QByteArrayList> parts)> done) = 0;
};

/// Makes a view in `parent`. The client outlives it.
using MakeEditorView = std::function<std::unique_ptr<EditorView>(const EditorView::Options &options,
                                                                 EditorViewClient &client, QWidget *parent)>;

} // namespace lumenfold

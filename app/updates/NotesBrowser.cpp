#include "app/updates/NotesBrowser.h"

#include <QEvent>
#include <QImage>
#include <QTextBlock>
#include <QTextCursor>

namespace lumenfold {
namespace {

/// Points.
constexpr double margin = 12;

} // namespace

NotesBrowser::NotesBrowser(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(margin);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl &page) {
        if (page.scheme() == QStringView(u"https") && !page.host().isEmpty()) {
            Q_EMIT pageChosen(page);
        }
    });
}

void NotesBrowser::setNotes(const QString &markdown)
{
    document()->setMarkdown(markdown, QTextDocument::MarkdownNoHTML);
    colorLinks();
    moveCursor(QTextCursor::Start);
}

QVariant NotesBrowser::loadResource(int type, const QUrl &)
{
    // Not an empty answer: the toolkit would go on and look for a file of that name.
    if (type == QTextDocument::ImageResource) {
        static const QImage nothing = [] {
            QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            return image;
        }();
        return nothing;
    }
    return QByteArray("");
}

void NotesBrowser::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colorLinks();
    }
}

/// Markdown is read with the colours of the application, which need not be those of this window.
void NotesBrowser::colorLinks()
{
    QTextCharFormat link;
    link.setForeground(palette().link());
    QTextCursor cursor(document());
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.charFormat().isAnchor() && fragment.charFormat().foreground() != link.foreground()) {
                cursor.setPosition(fragment.position());
                cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
                cursor.mergeCharFormat(link);
                // The fragments are others now.
                it = block.begin();
            }
        }
    }
}

} // namespace lumenfold

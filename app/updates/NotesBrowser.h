#pragma once

#include <QTextBrowser>

namespace lumenfold {

/// Shows release notes, which are Markdown without HTML. Whatever they name is not loaded, neither from a server nor
/// from this machine; a link is only followed when it is clicked, and only one to a secure page (`anchorClicked`).
class NotesBrowser : public QTextBrowser {
    Q_OBJECT

public:
    explicit NotesBrowser(QWidget *parent = nullptr);

    void setNotes(const QString &markdown);

    [[nodiscard]] QVariant loadResource(int type, const QUrl &name) override;

Q_SIGNALS:
    /// A secure link of the notes was chosen.
    void pageChosen(const QUrl &page);

protected:
    void changeEvent(QEvent *event) override;

private:
    void colorLinks();
};

} // namespace lumenfold

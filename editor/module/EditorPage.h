#pragma once

#include "editor/EditorView.h"

#include <QWebEnginePage>

class QWebEngineDownloadRequest;

namespace lumenfold {

/// What the page may do, which is what the client says; everything that it could be permitted by the user is refused.
class EditorPage : public QWebEnginePage {
    Q_OBJECT

public:
    EditorPage(QWebEngineProfile *profile, EditorViewClient &client);

protected:
    QWebEnginePage *createWindow(WebWindowType type) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList &oldFiles,
                            const QStringList &acceptedMimeTypes) override;
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    /// Dialogs of pages hold everything up, and a page can open one after the other: there are none.
    void javaScriptAlert(const QUrl &securityOrigin, const QString &message) override;
    bool javaScriptConfirm(const QUrl &securityOrigin, const QString &message) override;
    bool javaScriptPrompt(const QUrl &securityOrigin, const QString &message, const QString &defaultValue,
                          QString *result) override;
    /// What a page says there is for its own developers.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message, int lineNumber,
                                  const QString &sourceID) override;

private:
    void refusePermissions();
    void reportTroubles();
    void offer(QWebEngineDownloadRequest *download);

    EditorViewClient &m_client;
    bool m_certificateRefused = false;
};

} // namespace lumenfold

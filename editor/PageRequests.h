#pragma once

#include "editor/EditorView.h"
#include "platform/files/FileContents.h"
#include "service/BackgroundWork.h"

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QWidget;

namespace lumenfold {

class AppConfig;
class FilePanels;
class Workspace;

/// What the editor's page wants of the desktop: files to save and to read, and addresses to open elsewhere.
///
/// A page may want that in a loop. So an address is opened only after the user did something in the page, once for each
/// time; and when the user has closed a panel, the next one waits until he does something again.
class PageRequests : public QObject {
    Q_OBJECT

public:
    /// Everything must outlive this object.
    struct Collaborators {
        const AppConfig &config;
        Workspace &workspace;
        FilePanels &filePanels;
        std::function<QDateTime()> now = &QDateTime::currentDateTime;
    };

    explicit PageRequests(const Collaborators &collaborators);
    ~PageRequests() override;

    /// The window that panels stand in front of.
    void setWindow(QWidget *window);
    /// The user pressed a key or a button in the page.
    void noteInput();

    [[nodiscard]] bool allowsNavigation(const QUrl &address, NavigationKind kind);
    void openWindow(const QUrl &address);
    void saveFile(std::unique_ptr<OfferedFile> file);
    [[nodiscard]] QStringList chooseFiles(bool several);
    /// True while `chooseFiles` waits.
    [[nodiscard]] bool isChoosing() const { return m_isChoosing; }
    /// Closes the panel that it waits for.
    void cancelChoosing();

private:
    void openOutside(const QUrl &address);
    void saveDataURL(const QByteArray &address);
    /// Calls `save` with the path that the user chooses, if he does.
    void askWhereToSave(const QString &name, std::function<void(const QString &path)> save);
    /// `source` is kept until that is done.
    QCoro::Task<> write(QString path, FileWriter contents, std::shared_ptr<OfferedFile> source = {});
    [[nodiscard]] bool mayShowPanel() const;

    const Collaborators m_with;
    QPointer<QWidget> m_window;
    /// The user has done something since an address was opened last.
    bool m_mayOpen = false;
    /// The user has closed a panel and done nothing since.
    bool m_isRefused = false;
    bool m_isSaving = false;
    bool m_isChoosing = false;
    BackgroundWork m_work;
};

} // namespace lumenfold

#include "editor/PageRequests.h"

#include "app/configuration/AppConfig.h"
#include "editor/bridge/DataUrl.h"
#include "platform/filepanels/FilePanels.h"
#include "platform/files/UserFile.h"
#include "platform/workspace/Workspace.h"
#include "service/http/TransportError.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

#include <algorithm>
#include <array>
#include <utility>

namespace lumenfold {
namespace {

constexpr QStringView dataScheme = u"data";

/// Other addresses may start any program of the desktop.
bool isForTheBrowser(const QUrl &address)
{
    static constexpr std::array<QStringView, 3> schemes{u"https", u"http", u"mailto"};
    return address.isValid() && std::ranges::find(schemes, address.scheme()) != schemes.end();
}

void logSaveFailure(const QString &reason)
{
    qWarning().noquote().nospace() << "LumenFold: failed to save the editor download: " << reason;
}

} // namespace

PageRequests::PageRequests(const Collaborators &collaborators) : m_with(collaborators) {}

PageRequests::~PageRequests() = default;

void PageRequests::setWindow(QWidget *window)
{
    m_window = window;
    m_mayOpen = false;
    m_isRefused = false;
    m_isSaving = false;
}

void PageRequests::noteInput()
{
    m_mayOpen = true;
    m_isRefused = false;
}

bool PageRequests::allowsNavigation(const QUrl &address, NavigationKind kind)
{
    if (address.scheme() == dataScheme) {
        saveDataURL(address.toEncoded());
        return false;
    }
    if (kind == NavigationKind::linkClicked) {
        openOutside(address);
        return false;
    }
    return true;
}

void PageRequests::openWindow(const QUrl &address)
{
    if (address.scheme() == dataScheme) {
        saveDataURL(address.toEncoded());
    } else {
        openOutside(address);
    }
}

void PageRequests::openOutside(const QUrl &address)
{
    if (isForTheBrowser(address) && std::exchange(m_mayOpen, false)) {
        m_with.workspace.open(address);
    }
}

void PageRequests::saveDataURL(const QByteArray &address)
{
    const auto download = readDownload(address);
    if (!download) {
        if (download.error() == DownloadTrouble::malformed) {
            qWarning("LumenFold: malformed data URL from the editor download.");
        } else {
            qWarning("LumenFold: could not decode the editor download payload.");
        }
        return;
    }
    askWhereToSave(downloadName(m_with.now(), download->mimeType),
                   [this, bytes = download->bytes](const QString &path) {
                       write(path, [bytes](QFile &to) { return writeBytes(to, bytes); });
                   });
}

void PageRequests::saveFile(std::unique_ptr<OfferedFile> file)
{
    const QString name = QFileInfo(file->suggestedName()).fileName();
    const bool isData = file->address().scheme() == dataScheme;
    const std::shared_ptr<OfferedFile> offered(std::move(file));
    askWhereToSave(isData || name.isEmpty() ? downloadName(m_with.now(), offered->mimeType().toLower()) : name,
                   [this, offered](const QString &path) {
                       offered->fetch([self = QPointer(this), offered, path](const auto &fetched) {
                           if (!fetched) {
                               logSaveFailure(fetched.error());
                           } else if (self) {
                               self->write(path, contentsOf(*fetched), offered);
                           }
                       });
                   });
}

void PageRequests::askWhereToSave(const QString &name, std::function<void(const QString &path)> save)
{
    if (!mayShowPanel()) {
        return;
    }
    m_isSaving = true;
    m_with.filePanels.save(*m_window, QDir(m_with.config.saveDirectory()).filePath(name),
                           [self = QPointer(this), save = std::move(save)](const std::optional<QString> &path) {
                               if (!self) {
                                   return;
                               }
                               self->m_isSaving = false;
                               if (path) {
                                   save(*path);
                               } else {
                                   self->m_isRefused = true;
                               }
                           });
}

QCoro::Task<> PageRequests::write(QString path, FileWriter contents, std::shared_ptr<OfferedFile>)
{
    const std::function<tl::expected<void, QString>()> work = [path, contents] {
        return writeUserFile(path, contents);
    };
    tl::expected<void, QString> written;
    try {
        written = co_await m_work.run<tl::expected<void, QString>>(work);
    } catch (const TransportError &) {
        // The program ends; the file is being written all the same.
        co_return;
    }
    if (!written) {
        logSaveFailure(written.error());
    }
}

QStringList PageRequests::chooseFiles(bool several)
{
    if (!mayShowPanel()) {
        return {};
    }
    const QPointer self(this);
    m_isChoosing = true;
    QStringList chosen =
        m_with.filePanels.open(*m_window, several ? FilePanels::Count::several : FilePanels::Count::one);
    if (!self) {
        return {};
    }
    m_isChoosing = false;
    m_isRefused = chosen.isEmpty();
    return chosen;
}

void PageRequests::cancelChoosing()
{
    m_with.filePanels.cancelOpen();
}

bool PageRequests::mayShowPanel() const
{
    return m_window && !m_isSaving && !m_isChoosing && !m_isRefused;
}

} // namespace lumenfold

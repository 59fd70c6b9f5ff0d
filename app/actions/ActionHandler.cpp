#include "app/actions/ActionHandler.h"

#include "app/actions/SavedScreenshotName.h"
#include "app/configuration/AppConfig.h"
#include "platform/files/UserFile.h"
#include "platform/pasteboard/Pasteboard.h"

#include <QDebug>
#include <QDir>

#include <utility>

namespace lumenfold {

ActionHandler::ActionHandler(Pasteboard &pasteboard, const AppConfig &config, Clock now)
    : m_pasteboard(pasteboard), m_config(config), m_now(std::move(now))
{
}

void ActionHandler::copyToClipboard(const Image &image) const
{
    m_pasteboard.clearContents();
    m_pasteboard.writeImage(image);
    if (!image.isEncoded()) {
        return;
    }
    if (const std::optional<QByteArray> png = image.pngData()) {
        m_pasteboard.setPngData(*png);
    }
}

std::optional<QString> ActionHandler::saveToDisk(const Image &image) const
{
    const std::optional<FileWriter> write = image.pngWriter();
    if (!write) {
        return std::nullopt;
    }
    const QString path = QDir(m_config.saveDirectory()).filePath(savedScreenshotName(m_now()));
    if (const auto written = writeUserFile(path, *write); !written) {
        qWarning().noquote().nospace() << "LumenFold save error: " << written.error();
        return std::nullopt;
    }
    return path;
}

} // namespace lumenfold

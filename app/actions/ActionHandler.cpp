#include "app/actions/ActionHandler.h"

#include "app/actions/SavedScreenshotName.h"
#include "app/configuration/AppConfig.h"
#include "platform/pasteboard/Pasteboard.h"

#include <QDebug>
#include <QDir>
#include <QSaveFile>

#include <utility>

namespace lumenfold {
namespace {

/// A disk that fills up takes the first part of the bytes without complaint; only the attempt to write the rest tells
/// the reason.
bool writeAll(QSaveFile &file, const QByteArray &bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 count = file.write(bytes.constData() + written, bytes.size() - written);
        if (count < 0) {
            return false;
        }
        written += count;
    }
    return true;
}

} // namespace

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
    const std::optional<QByteArray> png = image.pngData();
    if (!png) {
        return std::nullopt;
    }
    const QString path = QDir(m_config.saveDirectory()).filePath(savedScreenshotName(m_now()));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !writeAll(file, *png) || !file.commit()) {
        qWarning().noquote().nospace() << "LumenFold save error: " << file.errorString();
        return std::nullopt;
    }
    return path;
}

} // namespace lumenfold

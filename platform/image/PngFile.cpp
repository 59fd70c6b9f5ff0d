#include "platform/image/PngFile.h"

#include <QFileInfo>

#include <atomic>

namespace lumenfold {
namespace {

std::atomic<int> openFiles = 0;

} // namespace

PngFile::PngFile()
{
    ++openFiles;
}

PngFile::~PngFile()
{
    --openFiles;
}

std::unique_ptr<PngFile> PngFile::open(const QString &path)
{
    std::unique_ptr<PngFile> file(new PngFile);
    file->m_file.setFileName(path);
    // A pipe would keep whoever opens it waiting.
    if (openFiles > maximumOpenFiles || !QFileInfo(path).isFile() ||
        !file->m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return nullptr;
    }
    return file;
}

QByteArray PngFile::readFirst(qint64 bytes)
{
    return m_file.seek(0) ? m_file.read(bytes) : QByteArray();
}

QByteArray PngFile::readAll()
{
    return m_file.seek(0) ? m_file.readAll() : QByteArray();
}

} // namespace lumenfold

#include "tests/unit/image/PngChunks.h"

#include <QtEndian>

#include <zlib.h>

#include <stdexcept>

namespace lumenfold::test {
namespace {

const QByteArray signature = QByteArrayLiteral("\x89PNG\r\n\x1a\n");

std::uint32_t checksum(const QByteArray &bytes)
{
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef *>(bytes.constData()), static_cast<uInt>(bytes.size())));
}

QByteArray bigEndian(std::uint32_t value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

} // namespace

std::vector<PngChunk> chunksOf(const QByteArray &file)
{
    if (!file.startsWith(signature)) {
        throw std::runtime_error("no signature");
    }
    std::vector<PngChunk> chunks;
    qsizetype at = signature.size();
    while (chunks.empty() || chunks.back().type != "IEND") {
        if (at + 12 > file.size()) {
            throw std::runtime_error("cut short");
        }
        const auto length = qsizetype{qFromBigEndian<quint32>(file.constData() + at)};
        if (at + 12 + length > file.size()) {
            throw std::runtime_error("chunk too long");
        }
        if (qFromBigEndian<quint32>(file.constData() + at + 8 + length) != checksum(file.mid(at + 4, 4 + length))) {
            throw std::runtime_error("wrong checksum");
        }
        chunks.push_back({file.mid(at + 4, 4), file.mid(at + 8, length)});
        at += 12 + length;
    }
    if (at != file.size()) {
        throw std::runtime_error("something behind the end");
    }
    return chunks;
}

QByteArray inflatedPixelData(const std::vector<PngChunk> &chunks)
{
    QByteArray deflated;
    for (const PngChunk &chunk : chunks) {
        if (chunk.type == "IDAT") {
            deflated += chunk.data;
        }
    }
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) {
        throw std::runtime_error("no zlib");
    }
    stream.next_in = reinterpret_cast<Bytef *>(deflated.data());
    stream.avail_in = static_cast<uInt>(deflated.size());
    QByteArray inflated;
    QByteArray piece(1 << 20, '\0');
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef *>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        result = inflate(&stream, Z_NO_FLUSH);
        inflated.append(piece.constData(), piece.size() - static_cast<qsizetype>(stream.avail_out));
    }
    const bool complete = result == Z_STREAM_END && stream.avail_in == 0;
    inflateEnd(&stream);
    if (!complete) {
        throw std::runtime_error("not one zlib stream");
    }
    return inflated;
}

QByteArray pngFile(const std::vector<PngChunk> &chunks)
{
    QByteArray file = signature;
    for (const PngChunk &chunk : chunks) {
        file += bigEndian(static_cast<std::uint32_t>(chunk.data.size()));
        file += chunk.type + chunk.data;
        file += bigEndian(checksum(chunk.type + chunk.data));
    }
    return file;
}

PngChunk headerChunk(const PngHeader &header)
{
    QByteArray data = bigEndian(header.width) + bigEndian(header.height);
    data += static_cast<char>(header.bitDepth);
    data += static_cast<char>(header.colorType);
    data += QByteArray(2, '\0');
    data += static_cast<char>(header.interlace);
    return {"IHDR", data};
}

PngChunk pixelChunk(const QByteArray &rows)
{
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    QByteArray deflated(static_cast<qsizetype>(size), '\0');
    compress(reinterpret_cast<Bytef *>(deflated.data()), &size, reinterpret_cast<const Bytef *>(rows.constData()),
             static_cast<uLong>(rows.size()));
    deflated.truncate(static_cast<qsizetype>(size));
    return {"IDAT", deflated};
}

} // namespace lumenfold::test

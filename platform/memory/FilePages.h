#pragma once

#include <QByteArray>
#include <QSet>

namespace lumenfold {

/// The paths of the files that are mapped into the program: libraries, mostly. Any thread.
[[nodiscard]] QSet<QByteArray> mappedFiles();

/// Takes these of the mapped files out of the program's memory: their code and constants, as long as nobody has changed
/// anything of them. The system keeps what it has of the files for as long as it has no better use for the room, so
/// having them back costs little. Takes some milliseconds; any thread.
void giveBackFilePages(const QSet<QByteArray> &files);

/// Has the system read all of these files that is mapped, in one go, so that no thread of the program waits for the
/// disk at every step through them. The program's memory does not grow by it. Returns when most of it is read; at once
/// when the system has it already. Any thread.
void readFilePagesAhead(const QSet<QByteArray> &files);

} // namespace lumenfold

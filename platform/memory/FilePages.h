#pragma once

#include <QByteArrayView>

namespace lumenfold {

/// Gives the memory of those files that are mapped into the program (libraries, mostly) and have `part` in their path
/// back to the system, which reads them anew when they are needed. What the program has changed of it stays. Takes some
/// milliseconds; any thread. Does nothing where the system does not know such a thing.
void giveBackFilePages(QByteArrayView part);

} // namespace lumenfold

/// A file of its own, so that the program beside the double of the service can have another.
#include "service/KeychainHelper.h"

namespace lumenfold {

const QString KeychainHelper::service = QStringLiteral("org.lumenfold.LumenFold");

} // namespace lumenfold

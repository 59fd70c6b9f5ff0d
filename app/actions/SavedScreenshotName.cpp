#include "app/actions/SavedScreenshotName.h"

#include <QLocale>

namespace lumenfold {

QString savedScreenshotName(const QDateTime &time)
{
    return QStringLiteral("LumenFold %1.png")
        .arg(QLocale::c().toString(time.toLocalTime(), u"yyyy-MM-dd 'at' HH.mm.ss"));
}

} // namespace lumenfold

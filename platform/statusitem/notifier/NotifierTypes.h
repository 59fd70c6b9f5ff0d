#pragma once

#include "platform/statusitem/StatusIconPainter.h"

#include <QByteArray>
#include <QColor>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

/// The structures of org.kde.StatusNotifierItem, as they travel.
namespace lumenfold {

/// (iiay): the pixels as alpha, red, green, blue, not multiplied, row by row.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    friend bool operator==(const NotifierPixmap &, const NotifierPixmap &) = default;
};
using NotifierPixmaps = QList<NotifierPixmap>;

/// (sa(iiay)ss)
struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps pixmaps;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const NotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierToolTip &toolTip);

/// To be called before any of them is sent or received.
void registerNotifierTypes();

/// The icon in every size that panels have, for those that paint pixels.
[[nodiscard]] NotifierPixmaps notifierPixmaps(const StatusIcon &icon, const QColor &templateColor);

} // namespace lumenfold

Q_DECLARE_METATYPE(lumenfold::NotifierPixmap)
Q_DECLARE_METATYPE(lumenfold::NotifierToolTip)

#pragma once

#include "platform/statusitem/notifier/NotifierTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QPoint>

#include <functional>

namespace lumenfold {

/// What the desktop is told about the item.
struct NotifierPicture {
    /// Of a file in `iconThemePath`; empty for none. Goes before the pixmaps.
    QString iconName;
    QString iconThemePath;
    NotifierPixmaps pixmaps;
    QString accessibilityDescription;
};

/// org.kde.StatusNotifierItem. The names are those on the bus.
class StatusNotifierItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(lumenfold::NotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ iconAccessibleDesc)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(lumenfold::NotifierPixmaps OverlayIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionIconName READ none)
    Q_PROPERTY(lumenfold::NotifierPixmaps AttentionIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(lumenfold::NotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

public:
    /// A child of the object that is put on the bus. `menuPath` is where on the same bus the menu is.
    StatusNotifierItemAdaptor(QString menuPath, QObject *parent);

    /// Tells the desktop that the picture is another one.
    void setPicture(NotifierPicture picture);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconName() const { return m_picture.iconName; }
    [[nodiscard]] NotifierPixmaps iconPixmap() const { return m_picture.pixmaps; }
    [[nodiscard]] QString iconAccessibleDesc() const { return m_picture.accessibilityDescription; }
    [[nodiscard]] QString iconThemePath() const { return m_picture.iconThemePath; }
    [[nodiscard]] QString none() const { return {}; }
    [[nodiscard]] NotifierPixmaps noPixmap() const { return {}; }
    [[nodiscard]] NotifierToolTip toolTip() const;
    /// A click with either button shows the menu.
    [[nodiscard]] bool itemIsMenu() const { return true; }
    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath(m_menuPath); }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names on the bus
    void ContextMenu(int x, int y);
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int delta, const QString &orientation);
    // NOLINTEND(readability-identifier-naming)

Q_SIGNALS:
    // NOLINTBEGIN(readability-identifier-naming)
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString &status);
    void NewIconThemePath(const QString &iconThemePath);
    // NOLINTEND(readability-identifier-naming)

public:
    /// A desktop that does not show the menu itself; root pixels, as the desktop says them.
    std::function<void(QPoint place)> onMenuRequested;

private:
    void requestMenu(int x, int y) const;

    const QString m_menuPath;
    NotifierPicture m_picture;
};

} // namespace lumenfold

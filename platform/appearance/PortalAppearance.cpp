#include "platform/appearance/PortalAppearance.h"

#include "platform/session/DesktopPortal.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace lumenfold {
namespace {

const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString settingsGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

/// The portal wraps the value in a variant, and its older call wraps that once more.
std::optional<ColorScheme> preferenceIn(QVariant value)
{
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    constexpr uint prefersDark = 1;
    constexpr uint prefersLight = 2;
    switch (value.toUInt()) {
    case prefersDark:
        return ColorScheme::dark;
    case prefersLight:
        return ColorScheme::light;
    default:
        return std::nullopt;
    }
}

ColorScheme schemeOfToolkit()
{
    constexpr int middle = 128;
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < middle;
    return isDark ? ColorScheme::dark : ColorScheme::light;
}

} // namespace

PortalAppearance::PortalAppearance() : m_told(schemeOfToolkit())
{
    QGuiApplication::instance()->installEventFilter(this);
    // Nothing that the user waits for at the start comes after this.
    QMetaObject::invokeMethod(this, &PortalAppearance::askTheDesktop, Qt::QueuedConnection);
}

PortalAppearance::~PortalAppearance() = default;

ColorScheme PortalAppearance::colorScheme() const
{
    return m_preference.value_or(schemeOfToolkit());
}

bool PortalAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QGuiApplication::instance()) {
        tellIfChanged();
    }
    return Appearance::eventFilter(watched, event);
}

void PortalAppearance::askTheDesktop()
{
    // Without the service's name: with it, the toolkit would ask the bus who that is, and wait for the answer. So
    // anybody on the bus can send this signal, and what counts is what the portal then answers.
    QDBusConnection::sessionBus().connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                                          {settingsGroup, colorSchemeKey}, QString(), this, SLOT(readSetting()));
    readSetting();
}

void PortalAppearance::readSetting()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("Read"));
    call << settingsGroup << colorSchemeKey;
    auto *answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        // No portal, or one that knows no such setting: the desktop has no preference.
        take(reply.isError() ? std::nullopt : preferenceIn(reply.value().variant()));
    });
}

void PortalAppearance::take(std::optional<ColorScheme> preference)
{
    m_preference = preference;
    tellIfChanged();
}

void PortalAppearance::tellIfChanged()
{
    if (colorScheme() != m_told) {
        m_told = colorScheme();
        Q_EMIT changed();
    }
}

} // namespace lumenfold

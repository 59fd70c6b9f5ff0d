#include "cards/face/StatusBadge.h"

#include "app/configuration/Palette.h"
#include "app/theme/Spinner.h"
#include "app/theme/Symbol.h"
#include "cards/face/AccessiblePart.h"
#include "cards/face/FaceStyle.h"
#include "platform/appearance/Appearance.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenfold {
namespace {

constexpr int textSize = 11;
constexpr int horizontalPadding = 10;
constexpr int verticalPadding = 6;
constexpr int iconSize = 13;
constexpr int iconSpacing = 5;

QFont textFont()
{
    return facestyle::font(textSize, QFont::DemiBold);
}

/// Lies over the badge and paints nothing: the badge is what is seen.
class BadgeButton : public QAbstractButton {
public:
    using QAbstractButton::QAbstractButton;

protected:
    void paintEvent(QPaintEvent *) override {}
};

} // namespace

StatusBadge::StatusBadge(std::function<void(const QUrl &uploaded)> onOpen, const Appearance &appearance,
                         QWidget *parent)
    : QLabel(parent), m_appearance(appearance), m_button(new BadgeButton(this))
{
    [[maybe_unused]] static const bool isPresented =
        presentToAssistiveTechnologies<StatusBadge, QAccessible::StaticText>();
    hide();
    m_button->setFocusPolicy(Qt::NoFocus);
    m_button->hide();
    connect(m_button, &QAbstractButton::clicked, this, [this, open = std::move(onOpen)] {
        const auto *uploaded = std::get_if<PreviewModel::Uploaded>(&m_status);
        if (uploaded != nullptr && uploaded->url) {
            open(*uploaded->url);
        }
    });
    connect(m_button, &QAbstractButton::pressed, this, qOverload<>(&QWidget::update));
    connect(m_button, &QAbstractButton::released, this, qOverload<>(&QWidget::update));
    connect(&m_appearance, &Appearance::changed, this, qOverload<>(&QWidget::update));
}

StatusBadge::~StatusBadge() = default;

void StatusBadge::setStatus(const PreviewModel::Status &status)
{
    m_status = status;
    bool canBeOpened = false;
    if (std::holds_alternative<PreviewModel::Uploading>(status)) {
        setText(tr("Uploading…"));
    } else if (const auto *uploaded = std::get_if<PreviewModel::Uploaded>(&status)) {
        setText(tr("Done"));
        canBeOpened = uploaded->url.has_value();
    } else if (const auto *failed = std::get_if<PreviewModel::Failed>(&status)) {
        setText(failed->message);
    } else {
        setText({});
    }
    setAttribute(Qt::WA_TransparentForMouseEvents, !canBeOpened);
    setAccessibleName(text());
    m_button->setAccessibleName(text());
    m_button->setVisible(canBeOpened);
    setVisible(!std::holds_alternative<PreviewModel::Idle>(status));
    place();
    spinWhileSeen();
    update();
}

bool StatusBadge::hasIcon() const
{
    return std::holds_alternative<PreviewModel::Uploading>(m_status) ||
           std::holds_alternative<PreviewModel::Uploaded>(m_status);
}

void StatusBadge::place()
{
    if (std::holds_alternative<PreviewModel::Idle>(m_status)) {
        // Nobody sees it, and measuring the first text costs milliseconds: the toolkit looks for fonts then.
        return;
    }
    const QFontMetricsF metrics(textFont());
    const int icon = hasIcon() ? iconSize + iconSpacing : 0;
    const int text = static_cast<int>(std::ceil(metrics.horizontalAdvance(this->text())));
    const int height = static_cast<int>(std::ceil(metrics.height())) + 2 * verticalPadding;
    const int width = std::min(text + icon + 2 * horizontalPadding, parentWidget()->width());
    setGeometry((parentWidget()->width() - width) / 2, 0, width, height);
}

void StatusBadge::spinWhileSeen()
{
    const bool spins = std::holds_alternative<PreviewModel::Uploading>(m_status) && isVisible();
    if (spins == m_spinner.isActive()) {
        return;
    }
    if (spins) {
        m_spinner.start(spinner::spokeMilliseconds, this);
    } else {
        m_spinner.stop();
    }
}

void StatusBadge::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_spinner.timerId()) {
        QLabel::timerEvent(event);
        return;
    }
    m_spoke = (m_spoke + 1) % spinner::spokes;
    update();
}

void StatusBadge::showEvent(QShowEvent *event)
{
    QLabel::showEvent(event);
    spinWhileSeen();
}

void StatusBadge::hideEvent(QHideEvent *event)
{
    QLabel::hideEvent(event);
    spinWhileSeen();
}

void StatusBadge::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    m_button->setGeometry(rect());
}

void StatusBadge::paintEvent(QPaintEvent *)
{
    const ColorScheme scheme = m_appearance.colorScheme();
    const bool isFailure = std::holds_alternative<PreviewModel::Failed>(m_status);
    const QColor color = (isFailure ? palette::statusFailure : palette::stackPillFg).in(scheme);
    const QRectF capsule(rect());

    QPainter painter(this);
    facestyle::paintRounded(painter, capsule, capsule.height() / 2,
                            {palette::stackPillBg.in(scheme), palette::stackPillBorder.in(scheme)});
    if (m_button->isDown()) {
        painter.setOpacity(facestyle::pressedOpacity);
    }
    QRectF label = capsule.adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    if (hasIcon()) {
        const QRectF icon(label.left(), std::round(capsule.center().y() - iconSize / 2.0), iconSize, iconSize);
        if (std::holds_alternative<PreviewModel::Uploading>(m_status)) {
            spinner::paint(painter, icon, m_spoke, color);
        } else {
            paintSymbol(painter, Symbol::checkmarkCircleFill, icon.center(), textSize, color);
        }
        label.setLeft(icon.right() + iconSpacing);
    }
    facestyle::paintLabel(painter, label, text(), textFont(), color);
}

} // namespace lumenfold

#include "cards/face/DraggableImageView.h"

#include "cards/face/AccessiblePart.h"
#include "cards/face/FaceStyle.h"
#include "platform/panels/Panel.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumenfold {
namespace {

/// A picture to assistive technology. Its press is the double click, and its other actions are named like the buttons
/// that they press.
class AccessiblePicture : public AccessiblePart {
public:
    explicit AccessiblePicture(DraggableImageView *view) : AccessiblePart(view, QAccessible::Graphic), m_view(view) {}

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names{pressAction()};
        const QList<QAbstractButton *> buttons = m_view->buttons();
        std::ranges::transform(buttons, std::back_inserter(names), &QAbstractButton::text);
        return names;
    }

    [[nodiscard]] QString localizedActionDescription(const QString &name) const override
    {
        return name == pressAction() ? DraggableImageView::tr("Shows the screenshot large") : name;
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction()) {
            m_view->expand();
            return;
        }
        const QList<QAbstractButton *> buttons = m_view->buttons();
        if (const auto found = std::ranges::find(buttons, name, &QAbstractButton::text); found != buttons.end()) {
            // Later, because the card may go with it.
            QMetaObject::invokeMethod(*found, &QAbstractButton::click, Qt::QueuedConnection);
        }
    }

private:
    DraggableImageView *m_view;
};

QAccessibleInterface *accessiblePicture(const QString &, QObject *object)
{
    auto *view = qobject_cast<DraggableImageView *>(object);
    return view != nullptr ? new AccessiblePicture(view) : nullptr;
}

} // namespace

DraggableImageView::DraggableImageView(Image image, Callbacks callbacks, const PanelFactory &panels, QWidget *parent)
    : QWidget(parent)
    , m_image(std::move(image))
    , m_callbacks(std::move(callbacks))
    , m_panels(panels)
    , m_picture(m_image)
{
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(accessiblePicture), true);
    setToolTip(tr("Drag to any app to upload this screenshot"));
    connect(&m_picture, &CardPicture::changed, this, qOverload<>(&QWidget::update));
    connect(&m_picture, &CardPicture::unreadable, this, [this] {
        if (const auto callback = m_callbacks.onUnreadable) {
            callback();
        }
    });
}

DraggableImageView::~DraggableImageView() = default;

void DraggableImageView::setSharpness(CardPicture::Sharpness sharpness)
{
    if (sharpness != m_sharpness) {
        m_sharpness = sharpness;
        update();
    }
}

void DraggableImageView::expand()
{
    if (const auto callback = m_callbacks.onDoubleClick) {
        callback();
    }
}

QList<QAbstractButton *> DraggableImageView::buttons() const
{
    return m_callbacks.buttons ? m_callbacks.buttons() : QList<QAbstractButton *>();
}

QPixmap DraggableImageView::visiblePicture()
{
    QPixmap seen(size() * devicePixelRatio());
    seen.setDevicePixelRatio(devicePixelRatio());
    seen.fill(Qt::transparent);
    QPainter painter(&seen);
    m_picture.paint(painter, rect(), facestyle::cardCornerRadius, m_sharpness);
    return seen;
}

void DraggableImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // Where windows do not blend, the window itself is cut to the rounded shape, and a soft edge inside it would turn
    // black.
    const double radius = m_panels.isTranslucencyAvailable() ? facestyle::cardCornerRadius : 0;
    m_picture.paint(painter, rect(), radius, m_sharpness);
}

void DraggableImageView::mousePressEvent(QMouseEvent *event)
{
    event->setAccepted(event->button() == Qt::LeftButton);
    if (event->isAccepted()) {
        m_pressedAt = event->position().toPoint();
    }
}

void DraggableImageView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressedAt || !m_isDragEnabled || !event->buttons().testFlag(Qt::LeftButton)) {
        event->ignore();
        return;
    }
    const QPoint way = event->position().toPoint() - *m_pressedAt;
    if (way.manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    const QPoint pressedAt = *std::exchange(m_pressedAt, std::nullopt);
    if (const auto callback = m_callbacks.onDragBegan) {
        callback(pressedAt);
    }
}

void DraggableImageView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressedAt.reset();
    }
}

void DraggableImageView::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->setAccepted(event->button() == Qt::LeftButton);
    if (event->isAccepted()) {
        expand();
    }
}

} // namespace lumenfold

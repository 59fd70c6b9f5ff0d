#include "cards/face/DraggableImageView.h"

#include "cards/face/FaceStyle.h"
#include "platform/panels/Panel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace lumenfold {
namespace {

/// A picture to assistive technology, and its press is the double click.
class AccessiblePicture : public QAccessibleWidget {
public:
    explicit AccessiblePicture(DraggableImageView *view) : QAccessibleWidget(view, QAccessible::Graphic), m_view(view)
    {
    }

    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString &name) override
    {
        if (name == pressAction()) {
            m_view->expand();
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

#include "tests/unit/cardface/CardFaceFixture.h"

#include "cards/CardSizing.h"
#include "cards/face/ActionPanel.h"
#include "cards/face/DraggableImageView.h"

#include <QApplication>
#include <QEnterEvent>
#include <QMouseEvent>

#include <algorithm>

namespace lumenfold::test {
namespace {

void sendMouse(QWidget &view, QEvent::Type type, QPoint place)
{
    QWidget *target = view.childAt(place);
    target = target != nullptr ? target : &view;
    const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, target->mapFrom(&view, place), view.mapToGlobal(place), Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

} // namespace

Image picture(QSize size, const QColor &color)
{
    QImage pixels(size, QImage::Format_RGB32);
    pixels.fill(color);
    return Image::fromPixels(std::move(pixels));
}

void enter(QWidget &view)
{
    const QPointF middle = QRectF(view.rect()).center();
    QEnterEvent event(middle, middle, view.mapToGlobal(middle));
    QApplication::sendEvent(&view, &event);
}

void leave(QWidget &view)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&view, &event);
}

void click(QWidget &view, QPoint place)
{
    sendMouse(view, QEvent::MouseButtonPress, place);
    sendMouse(view, QEvent::MouseButtonRelease, place);
}

void doubleClick(QWidget &view, QPoint place)
{
    click(view, place);
    sendMouse(view, QEvent::MouseButtonDblClick, place);
    sendMouse(view, QEvent::MouseButtonRelease, place);
}

QAbstractButton *buttonNamed(const QWidget &view, const QString &name)
{
    const auto buttons = view.findChildren<QAbstractButton *>();
    const auto found = std::ranges::find(buttons, name, &QWidget::accessibleName);
    return found == buttons.end() ? nullptr : *found;
}

CardFaceTest::CardFaceTest() = default;

CardFaceTest::~CardFaceTest() = default;

CardActions::Collaborators CardFaceTest::actionCollaborators()
{
    return {.actions = actions,
            .config = config,
            .queue = queue,
            .workspace = workspace,
            .service = &service,
            .apiKeySetup = &apiKeySetup,
            .templates = &templates};
}

void CardFaceTest::makeCard(PreviewCardVariant variant, const Image &shown)
{
    const PreviewModel::Options options{
        .image = shown, .editorSourceImage = picture({80, 60}, Qt::red), .variant = variant};
    model = std::make_shared<PreviewModel>(config, options);
    model->onDismiss = [this] { reported.append(QStringLiteral("dismiss")); };
    model->onPinRequested = [this] { reported.append(QStringLiteral("pin")); };
    model->onEditRequested = [this] { reported.append(QStringLiteral("edit")); };
    model->onBringToFront = [this] { reported.append(QStringLiteral("bringToFront")); };
    model->onExpandRequested = [this] { reported.append(QStringLiteral("expand")); };
    model->onPanDragBegan = [this] { reported.append(QStringLiteral("panBegan")); };
    model->onPanDragEnded = [this] { reported.append(QStringLiteral("panEnded")); };
    model->onResizeDragBegan = [this](PreviewResizeCorner corner) {
        reported.append(QStringLiteral("resizeBegan %1").arg(static_cast<int>(corner)));
    };
    model->onResizeDragEnded = [this] { reported.append(QStringLiteral("resizeEnded")); };
    view = std::make_unique<PreviewView>(model, PreviewView::Collaborators{.panels = panels,
                                                                           .appearance = appearance,
                                                                           .screens = screens,
                                                                           .monitors = monitors,
                                                                           .actions = actionCollaborators(),
                                                                           .dragSessions = &drags,
                                                                           .dragFolder = &dragFolder});
    const int margins = 2 * static_cast<int>(cardHitMargin(variant));
    view->resize(200 + margins, 150 + margins);
    view->show();
}

QWidget &CardFaceTest::image() const
{
    return *view->findChild<DraggableImageView *>();
}

bool CardFaceTest::isSeen(const QString &buttonName) const
{
    const QAbstractButton *button = buttonNamed(*view, buttonName);
    if (button == nullptr || !button->isVisible()) {
        return false;
    }
    const auto *panel = qobject_cast<const ActionPanel *>(button->parentWidget());
    return panel == nullptr || panel->isShown();
}

} // namespace lumenfold::test

#include "service/apikey/ApiKeySetupWindowController.h"

#include "app/theme/WindowTheme.h"
#include "platform/workspace/Workspace.h"

#include <QDialog>
#include <QScreen>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

ApiKeySetupWindowController *sharedController = nullptr;

} // namespace

ApiKeySetupWindowController::ApiKeySetupWindowController(const ApiKeySetupView::Collaborators &collaborators)
    : m_with(collaborators)
{
}

ApiKeySetupWindowController::~ApiKeySetupWindowController() = default;

ApiKeySetupWindowController &ApiKeySetupWindowController::shared()
{
    Q_ASSERT_X(sharedController, "ApiKeySetupWindowController::shared", "called before the composition root made it");
    return *sharedController;
}

void ApiKeySetupWindowController::setShared(ApiKeySetupWindowController *controller)
{
    sharedController = controller;
}

void ApiKeySetupWindowController::present()
{
    if (!m_window) {
        makeWindow();
    }
    m_window->show();
    m_with.workspace.activateIgnoringOtherApps();
    m_window->raise();
    m_window->activateWindow();
}

void ApiKeySetupWindowController::makeWindow()
{
    m_window = std::make_unique<QDialog>(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                                      Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
    m_window->setWindowTitle(tr("Connect to LumenFold"));
    WindowTheme::install(*m_window, m_with.appearance);
    auto *view = new ApiKeySetupView(
        m_with,
        [self = QPointer(this)] {
            if (self) {
                self->connected();
            }
        },
        m_window.get());
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins({});
    // Not resizable, and as high as its contents whenever they change.
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(view);
    view->setFocus();
    const QRect free = m_window->screen()->availableGeometry();
    m_window->adjustSize();
    m_window->move(free.center() - m_window->rect().center());
}

void ApiKeySetupWindowController::connected()
{
    m_window->close();
    // The view has called this, and is not done yet.
    m_window.release()->deleteLater();
}

} // namespace lumenfold

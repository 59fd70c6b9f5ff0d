#include "settings/SettingsWindowController.h"

#include "app/theme/WindowTheme.h"
#include "platform/workspace/Workspace.h"

#include <QCoreApplication>
#include <QDialog>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace lumenfold {
namespace {

SettingsWindowController *sharedController = nullptr;

} // namespace

SettingsWindowController::SettingsWindowController(const Collaborators &collaborators) : m_with(collaborators) {}

SettingsWindowController::~SettingsWindowController() = default;

SettingsWindowController &SettingsWindowController::shared()
{
    Q_ASSERT_X(sharedController, "SettingsWindowController::shared", "called before the composition root made it");
    return *sharedController;
}

void SettingsWindowController::setShared(SettingsWindowController *controller)
{
    sharedController = controller;
}

void SettingsWindowController::present()
{
    if (!window) {
        makeWindow();
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    m_with.workspace.activateIgnoringOtherApps();
    window->raise();
    window->activateWindow();
}

void SettingsWindowController::makeWindow()
{
    // A dialog knows a default button, and closes with Escape.
    window = std::make_unique<QDialog>(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                                    Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    window->setWindowTitle(QCoreApplication::translate("lumenfold::SettingsWindowController", "LumenFold Settings"));
    WindowTheme::install(*window, m_with.view.account.appearance);
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins({});
    layout->addWidget(new SettingsView(m_with.view, window.get()));
    window->setFixedSize(SettingsView::size);
    const auto *close = new QShortcut(QKeySequence::Close, window.get());
    QObject::connect(close, &QShortcut::activated, window.get(), &QWidget::close);
    const QRect free = window->screen()->availableGeometry();
    window->move(free.center() - window->rect().center());
}

} // namespace lumenfold

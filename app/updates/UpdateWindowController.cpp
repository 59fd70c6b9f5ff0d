#include "app/updates/UpdateWindowController.h"

#include "app/theme/ProgramIcon.h"
#include "app/theme/WindowTheme.h"
#include "app/updates/UpdateHeader.h"
#include "app/updates/UpdateNotice.h"
#include "app/updates/UpdateOffer.h"
#include "platform/workspace/Workspace.h"

#include <QDialog>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

namespace lumenfold {

UpdateWindowController::UpdateWindowController(Collaborators collaborators) : m_with(std::move(collaborators)) {}

UpdateWindowController::~UpdateWindowController() = default;

void UpdateWindowController::showChecking(std::function<void()> onDismissed)
{
    m_onDismissed = std::move(onDismissed);
    show(new UpdateNotice({.heading = tr("Checking for updates…"),
                           .button = tr("Cancel"),
                           .activity = UpdateNotice::Activity::underWay}),
         Size::ofContent);
    bringForward();
}

void UpdateWindowController::showUpdate(const AvailableUpdate &update, std::function<void(UpdateChoice)> onChosen)
{
    m_onDismissed = nullptr;
    m_onChosen = std::move(onChosen);
    m_choice = UpdateChoice::remindLater;
    auto *offer = new UpdateOffer(update, m_with.runningVersion);
    connect(offer, &UpdateOffer::chosen, this, [this](UpdateChoice choice) {
        m_choice = choice;
        m_window->close();
    });
    connect(offer, &UpdateOffer::pageChosen, this, [this](const QUrl &page) { m_with.workspace.open(page); });
    show(offer, Size::ofUser);
}

void UpdateWindowController::showUpToDate()
{
    m_onDismissed = nullptr;
    show(new UpdateNotice({.heading = tr("You're up to date"),
                           .text = tr("LumenFold %1 is the newest version for this system.").arg(m_with.runningVersion),
                           .button = tr("OK")}),
         Size::ofContent);
}

void UpdateWindowController::showFailure(UpdateCheckError error)
{
    m_onDismissed = nullptr;
    const auto text = [error] {
        switch (error) {
        case UpdateCheckError::unreachable:
            return tr("Couldn't reach the update server. Check your connection and try again.");
        case UpdateCheckError::untrusted:
            return tr("What the update server sent isn't signed by the makers of LumenFold, so it can't be trusted. "
                      "Try again later, or from another network.");
        case UpdateCheckError::unreadable:
            return tr("What the update server sent couldn't be understood. Try again later.");
        case UpdateCheckError::withoutKey:
            break;
        }
        return tr("This copy of LumenFold was built without the key that updates are recognised by. Get updates from "
                  "where you got LumenFold.");
    };
    show(new UpdateNotice({.heading = tr("Couldn't check for updates"), .text = text(), .button = tr("OK")}),
         Size::ofContent);
}

bool UpdateWindowController::bringUpdateForward()
{
    if (!m_onChosen) {
        return false;
    }
    bringForward();
    return true;
}

void UpdateWindowController::show(QWidget *content, Size size)
{
    if (!m_window) {
        makeWindow();
    }
    const QPoint center = m_window->geometry().center();
    const bool isFirst = m_content == nullptr;
    delete std::exchange(m_content, content);
    m_layout->addWidget(content);
    content->show();
    if (auto *notice = qobject_cast<UpdateNotice *>(content)) {
        connect(notice, &UpdateNotice::closed, m_window.get(), &QDialog::close);
    }
    // The former content has left its measures behind.
    m_window->setMinimumSize(0, 0);
    m_window->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    m_layout->setSizeConstraint(size == Size::ofContent ? QLayout::SetFixedSize : QLayout::SetMinimumSize);
    m_layout->invalidate();
    m_layout->activate();
    if (size == Size::ofUser) {
        m_window->resize(
            QSize(updateWindow::offerWidth, updateWindow::offerHeight).expandedTo(m_layout->totalMinimumSize()));
    } else {
        m_window->adjustSize();
    }
    const QPoint newCenter = isFirst ? m_window->screen()->availableGeometry().center() : center;
    m_window->move(newCenter - QRect(QPoint(), m_window->size()).center());
    content->setFocus();
    m_window->show();
}

void UpdateWindowController::makeWindow()
{
    m_window = std::make_unique<QDialog>(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                                      Qt::WindowCloseButtonHint);
    m_window->setWindowTitle(tr("Software Update"));
    m_window->setWindowIcon(programIcon());
    WindowTheme::install(*m_window, m_with.appearance);
    m_layout = new QVBoxLayout(m_window.get());
    m_layout->setContentsMargins({});
    connect(m_window.get(), &QDialog::finished, this, &UpdateWindowController::closed);
}

void UpdateWindowController::bringForward()
{
    m_with.workspace.activateIgnoringOtherApps();
    m_window->raise();
    m_window->activateWindow();
}

void UpdateWindowController::closed()
{
    // The window says so itself, and is not done yet.
    m_window.release()->deleteLater();
    m_layout = nullptr;
    m_content = nullptr;
    const auto onDismissed = std::exchange(m_onDismissed, nullptr);
    const auto onChosen = std::exchange(m_onChosen, nullptr);
    if (onDismissed) {
        onDismissed();
    }
    if (onChosen) {
        onChosen(m_choice);
    }
}

} // namespace lumenfold

#include "platform/alerts/QtAlerts.h"

#include <QCoroSignal>

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedPointer>

#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// The size at which dialogs show their icon, in points.
constexpr int iconExtent = 64;

QMessageBox::ButtonRole roleOf(qsizetype index, qsizetype count)
{
    if (index == 0) {
        return QMessageBox::AcceptRole;
    }
    return index == count - 1 ? QMessageBox::RejectRole : QMessageBox::ActionRole;
}

struct Box {
    /// Lives until its answer has been read, and goes outside its own signal.
    std::unique_ptr<QMessageBox, QScopedPointerDeleteLater> box;
    /// In the order of the alert; the box itself orders them by role.
    QList<QAbstractButton *> buttons;
};

Box makeBox(const Alert &alert)
{
    std::unique_ptr<QMessageBox, QScopedPointerDeleteLater> box(new QMessageBox);
    QList<QAbstractButton *> buttons;
    box->setWindowModality(Qt::ApplicationModal);
    box->setWindowFlag(Qt::WindowStaysOnTopHint);
    box->setWindowTitle(QGuiApplication::applicationDisplayName());
    // What is shown may hold the words of a server; none of it is markup.
    box->setTextFormat(Qt::PlainText);
    box->setText(alert.messageText);
    box->setInformativeText(alert.informativeText);
    const QIcon icon = QApplication::windowIcon();
    if (icon.isNull()) {
        box->setIcon(QMessageBox::Warning);
    } else {
        box->setIconPixmap(icon.pixmap(QSize(iconExtent, iconExtent), box->devicePixelRatio()));
    }
    for (qsizetype index = 0; index < alert.buttons.size(); ++index) {
        QPushButton *button = box->addButton(alert.buttons.at(index), roleOf(index, alert.buttons.size()));
        buttons.append(button);
        if (index == 0) {
            box->setDefaultButton(button);
        }
        if (index == alert.buttons.size() - 1) {
            box->setEscapeButton(button);
        }
    }
    return {std::move(box), buttons};
}

} // namespace

QCoro::Task<int> QtAlerts::runModal(Alert alert)
{
    const auto [box, buttons] = makeBox(alert);
    // Not open(), which would make it modal to its parent window, of which it has none.
    box->show();
    box->raise();
    box->activateWindow();
    co_await qCoro(box.get(), &QMessageBox::finished);
    const qsizetype chosen = buttons.indexOf(box->clickedButton());
    co_return alertFirstButtonReturn + static_cast<int>(chosen < 0 ? buttons.size() - 1 : chosen);
}

} // namespace lumenfold

#include "tests/components/updates/UpdatesFixture.h"

#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>

#include <stdexcept>

namespace lumenfold::test {
namespace {

QDialog *shownDialog()
{
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *each : all) {
        if (auto *dialog = qobject_cast<QDialog *>(each); dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

/// Texts of the labels that are seen, from above.
QStringList texts()
{
    QStringList seen;
    if (const QDialog *dialog = shownDialog()) {
        const auto labels = dialog->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            if (label->isVisible() && !label->text().isEmpty()) {
                seen.append(label->text());
            }
        }
    }
    return seen;
}

} // namespace

void UpdatesTest::check()
{
    updater.checkForUpdates();
    waitUntil("the end of the check", [] { return !heading().isEmpty() && heading() != u"Checking for updates…"; });
}

QDialog *UpdatesTest::window()
{
    return shownDialog();
}

QString UpdatesTest::heading()
{
    return texts().value(0);
}

QString UpdatesTest::text()
{
    return texts().value(1);
}

QPushButton *UpdatesTest::button(const QString &text)
{
    const auto buttons = window()->findChildren<QPushButton *>();
    for (QPushButton *each : buttons) {
        if (each->isVisible() && each->text() == text) {
            return each;
        }
    }
    throw std::runtime_error("there is no button " + text.toStdString());
}

void UpdatesTest::press(int key)
{
    QWidget *focused = QApplication::focusWidget();
    ASSERT_NE(focused, nullptr);
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(focused, &down);
}

} // namespace lumenfold::test

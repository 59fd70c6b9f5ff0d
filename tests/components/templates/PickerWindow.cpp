#include "tests/components/templates/PickerWindow.h"

#include "app/theme/WindowTheme.h"
#include "platform/image/EncodingPool.h"
#include "tests/support/desktop/Wait.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumenfold::test {

PickerWindowTest::PickerWindowTest()
{
    pointer.moveTo({0, 0});
    setTemplates(40);
}

PickerWindowTest::~PickerWindowTest()
{
    window.reset();
    while (service.running() > 0) {
        service.succeed();
    }
    backgroundPool().waitForDone();
    QCoreApplication::processEvents();
}

void PickerWindowTest::setTemplates(int count)
{
    service.templates.clear();
    for (int number = 1; number <= count; ++number) {
        service.templates.push_back(
            {.id = QStringLiteral("t%1").arg(number),
             .name = QStringLiteral("Template %1").arg(number),
             .previewUrl = server.url(QStringLiteral("/previews/%1.png").arg(number)).toString(),
             .editedAt = QString::number(100'000 - number)});
    }
}

void PickerWindowTest::open()
{
    window = std::make_unique<QWidget>();
    WindowTheme::install(*window, appearance);
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    picker = new TemplatePickerView({.picker = {.service = *listedBy,
                                                .isSignedIn = [this] { return isSignedIn; },
                                                .store = store,
                                                .notifications = notifications,
                                                .apiKeySetup = apiKeySetup},
                                     .downloads = downloads,
                                     .cache = PreviewCache(cacheFolder.path())});
    layout->addWidget(picker);
    window->resize(520, 416);
    window->show();
    window->activateWindow();
    waitUntil("the window to have the keyboard", [this] { return hasKeyboard(window.get()); });
}

void PickerWindowTest::openLoaded()
{
    open();
    service.succeed();
    waitUntil("the grid", [this] { return grid().isVisible() && grid().visualRect(grid().currentIndex()).isValid(); });
}

QPushButton *PickerWindowTest::button(const QString &text) const
{
    const auto buttons = picker->findChildren<QPushButton *>();
    for (QPushButton *each : buttons) {
        if (each->text() == text && each->isVisible()) {
            return each;
        }
    }
    return nullptr;
}

bool PickerWindowTest::isShown(const QString &text) const
{
    const auto labels = picker->findChildren<QLabel *>();
    return std::ranges::any_of(labels,
                               [&](const QLabel *label) { return label->isVisible() && label->text() == text; });
}

QStringList PickerWindowTest::shownNames() const
{
    QStringList names;
    for (int row = 0; row < grid().model()->rowCount(); ++row) {
        names.append(grid().model()->index(row, 0).data().toString());
    }
    return names;
}

QPoint PickerWindowTest::onScreen(const QWidget &widget, QPoint place) const
{
    return widget.mapToGlobal(place) * window->devicePixelRatioF();
}

QPoint PickerWindowTest::cellOnScreen(int row) const
{
    return onScreen(*grid().viewport(), grid().cellRect(grid().model()->index(row, 0)).center());
}

} // namespace lumenfold::test

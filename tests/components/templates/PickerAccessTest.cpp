#include "tests/components/templates/PickerWindow.h"

#include "service/ServiceError.h"
#include "tests/support/desktop/Wait.h"

#include <QAccessible>
#include <QApplication>
#include <QLayout>
#include <QTranslator>

namespace lumenfold::test {
namespace {

/// With the keyboard alone, with assistive technologies, and in languages that need more room.
class PickerAccessTest : public PickerWindowTest {
protected:
    [[nodiscard]] bool hasFocus(const QWidget &widget) const
    {
        return waitFor([&] { return QApplication::focusWidget() == &widget; });
    }
    [[nodiscard]] bool isCurrent(const QString &name) const
    {
        return waitFor([&] { return grid().currentIndex().data().toString() == name; });
    }
};

TEST_F(PickerAccessTest, TabReachesEverything)
{
    store.select(service.templates.at(0));
    openLoaded();
    QPushButton *clear = button(QStringLiteral("Clear"));
    clear->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(hasFocus(*clear));
    keyboard.press("Tab");
    EXPECT_TRUE(hasFocus(search()));
    keyboard.press("Tab");
    EXPECT_TRUE(hasFocus(grid()));
    keyboard.press("Shift+Tab");
    EXPECT_TRUE(hasFocus(search()));
    keyboard.press("Shift+Tab");
    EXPECT_TRUE(hasFocus(*clear));
    keyboard.press("space");
    EXPECT_TRUE(waitFor([this] { return !store.hasSelection(); }));
}

TEST_F(PickerAccessTest, TheRetryButtonIsReachedToo)
{
    open();
    service.fail(ServiceError::decoding());
    search().setFocus();
    keyboard.press("Tab");
    ASSERT_TRUE(hasFocus(*button(QStringLiteral("Retry"))));
    keyboard.press("space");
    EXPECT_TRUE(waitFor([this] { return service.fetches == 2; }));
    service.succeed();
}

TEST_F(PickerAccessTest, ArrowsMoveAndSpaceAndReturnToggle)
{
    openLoaded();
    search().setFocus();
    keyboard.press("Down");
    ASSERT_TRUE(hasFocus(grid()));
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 1")));
    keyboard.press("Right");
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 2")));
    keyboard.press("Down");
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 5")));
    keyboard.press("Left");
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 4")));
    keyboard.press("space");
    ASSERT_TRUE(waitFor([this] { return store.selectedId() == QStringLiteral("t4"); }));
    EXPECT_EQ(shownNames().constFirst(), QStringLiteral("Template 4"));
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 4"))) << "the keyboard goes with its template";
    keyboard.press("Return");
    ASSERT_TRUE(waitFor([this] { return !store.hasSelection(); }));
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 4")));
    keyboard.press("End");
    EXPECT_TRUE(isCurrent(QStringLiteral("Template 40")));
    EXPECT_TRUE(waitFor(
        [this] { return grid().viewport()->rect().contains(grid().visualRect(grid().currentIndex()).center()); }));
}

TEST_F(PickerAccessTest, EscapeClearsTheSearchAlsoFromTheGridAndThenIsTheWindows)
{
    openLoaded();
    search().setFocus();
    search().setText(QStringLiteral("4"));
    keyboard.press("Down");
    ASSERT_TRUE(hasFocus(grid()));
    keyboard.press("Escape");
    ASSERT_TRUE(waitFor([this] { return search().text().isEmpty(); }));

    struct Watcher : public QObject {
        bool eventFilter(QObject *, QEvent *event) override
        {
            isReached |= event->type() == QEvent::KeyPress;
            return false;
        }
        bool isReached = false;
    } watcher;
    window->installEventFilter(&watcher);
    keyboard.press("Escape");
    EXPECT_TRUE(waitFor([&] { return watcher.isReached; }));
}

TEST_F(PickerAccessTest, ControlFGoesToTheSearch)
{
    openLoaded();
    grid().setFocus();
    keyboard.press("Ctrl+f");
    EXPECT_TRUE(hasFocus(search()));
}

TEST_F(PickerAccessTest, WhoeverUsesTheKeyboardSeesWhereItIs)
{
    openLoaded();
    const auto ring = [this] {
        const QRect cell = grid().cellRect(grid().currentIndex());
        const QPoint place = grid().viewport()->mapTo(window.get(), QPoint(cell.center().x(), cell.top() - 3));
        return window->grab().toImage().pixelColor(place * window->devicePixelRatio());
    };
    search().setFocus();
    const QColor without = ring();
    keyboard.press("Tab");
    ASSERT_TRUE(hasFocus(grid()));
    EXPECT_TRUE(waitFor([&] { return ring() != without; }));
    EXPECT_GT(ring().saturation(), 100);
}

TEST_F(PickerAccessTest, AssistiveTechnologiesFindNamesRolesAndStates)
{
    store.select(service.templates.at(2));
    openLoaded();
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&grid());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Templates"));
    ASSERT_EQ(list->childCount(), 40);
    QAccessibleInterface *first = list->child(0);
    EXPECT_EQ(first->role(), QAccessible::ListItem);
    EXPECT_EQ(first->text(QAccessible::Name), QStringLiteral("Template 3, default template"));
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), QStringLiteral("Template 1"));

    QAccessibleInterface *field = QAccessible::queryAccessibleInterface(&search());
    EXPECT_EQ(field->role(), QAccessible::EditableText);
    EXPECT_EQ(field->text(QAccessible::Name), QStringLiteral("Search templates by name"));
    const auto buttons = picker->findChildren<QAbstractButton *>();
    for (QAbstractButton *each : buttons) {
        if (each->isVisible() && each->isEnabled()) {
            EXPECT_FALSE(QAccessible::queryAccessibleInterface(each)->text(QAccessible::Name).isEmpty());
        }
    }
}

TEST_F(PickerAccessTest, TheMessageIsText)
{
    open();
    service.fail(ServiceError::server(500, QStringLiteral("oops")));
    const auto labels = picker->findChildren<QLabel *>();
    const auto message = std::ranges::find_if(
        labels, [](const QLabel *label) { return label->text() == QStringLiteral("Server returned 500: oops"); });
    ASSERT_NE(message, labels.end());
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(*message);
    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Server returned 500: oops"));
}

/// Every text is half as long again, with words as long as German has.
class LongerTexts : public QTranslator {
public:
    [[nodiscard]] QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (!QByteArrayView(context).startsWith("lumenfold::")) {
            return {};
        }
        const QString source = QString::fromUtf8(text);
        return source + QStringLiteral(" Vorlagen") + source.left(source.size() / 2).remove(u' ');
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
};

TEST_F(PickerAccessTest, LongerTextsAreNotCutOff)
{
    LongerTexts german;
    QCoreApplication::installTranslator(&german);
    store.select(service.templates.at(0));
    open();
    const auto judge = [this] {
        waitUntil("the layout", [this] { return picker->layout()->geometry().width() == picker->width(); });
        EXPECT_EQ(window->size(), QSize(520, 416));
        for (const QLabel *label : picker->findChildren<QLabel *>()) {
            if (label->isVisible()) {
                EXPECT_TRUE(waitFor([&] { return label->heightForWidth(label->width()) <= label->height(); }))
                    << qPrintable(label->text());
            }
        }
        for (const QPushButton *each : picker->findChildren<QPushButton *>()) {
            if (each->isVisible()) {
                EXPECT_GE(each->width(), each->sizeHint().width()) << qPrintable(each->text());
            }
        }
    };
    judge();
    service.fail(ServiceError::decoding());
    judge();
    isSignedIn = false;
    picker->hide();
    picker->show();
    notifications.post(QStringLiteral("LumenFold.authStateChanged"));
    judge();
    QCoreApplication::removeTranslator(&german);
}

} // namespace
} // namespace lumenfold::test

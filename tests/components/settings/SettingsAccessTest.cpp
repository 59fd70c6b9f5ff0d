#include "tests/components/settings/SettingsWindowFixture.h"

#include "settings/GeneralSettingsView.h"
#include "settings/PathLabel.h"
#include "settings/SettingsSection.h"
#include "settings/SettingsTabBar.h"
#include "tests/support/desktop/Wait.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QToolButton>
#include <QTranslator>

namespace lumenfold::test {
namespace {

/// With the keyboard alone, with assistive technologies, and in languages that need more room.
using SettingsAccessTest = SettingsWindowTest;

const QStringList allTabs{QStringLiteral("General"), QStringLiteral("Template"), QStringLiteral("Account")};

QString accessibleName(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

TEST_F(SettingsAccessTest, TabReachesEveryControl)
{
    desk->config.chooseSaveDirectory(QStringLiteral("/media/unplugged"));
    present();
    const auto *page = SettingsDesk::window()->findChild<GeneralSettingsView *>();
    QSet<QWidget *> wanted{SettingsDesk::window()->findChild<SettingsTabBar *>()};
    for (QAbstractButton *button : SettingsDesk::parts<QAbstractButton>()) {
        // Of radio buttons that belong together the keyboard comes to one, and the arrows to the others.
        const auto *radio = qobject_cast<QRadioButton *>(button);
        if (page->isAncestorOf(button) && (radio == nullptr || radio->isChecked())) {
            wanted.insert(button);
        }
    }
    EXPECT_EQ(wanted.size(), 1 + 4 * 2 + 2 + 1 + 1 + 1 + 1);
    QSet<QWidget *> reached;
    for (int step = 0; step < 40 && reached != wanted; ++step) {
        const QWidget *before = QApplication::focusWidget();
        keyboard.press("Tab");
        ASSERT_TRUE(waitFor([before] { return QApplication::focusWidget() != before; }));
        QWidget *now = QApplication::focusWidget();
        reached.insert(now);
        if (page->isAncestorOf(now)) {
            const QRect place(now->mapTo(page->viewport(), QPoint(0, 0)), now->size());
            EXPECT_TRUE(page->viewport()->rect().contains(place)) << "the page goes along";
        }
    }
    EXPECT_EQ(reached, wanted);
}

TEST_F(SettingsAccessTest, ArrowsChooseAmongRadioButtons)
{
    present();
    SettingsDesk::part<QRadioButton>(QStringLiteral("LumenFold Mac app"))->setFocus(Qt::TabFocusReason);
    keyboard.press("Down");
    EXPECT_TRUE(waitFor([this] { return desk->config.editorLocation() == EditorLocation::browser; }));
    keyboard.press("Up");
    EXPECT_TRUE(waitFor([this] { return desk->config.editorLocation() == EditorLocation::macApp; }));
    EXPECT_FALSE(desk->defaults.contains(AppConfig::replaceCardOnEditKey)) << "the groups do not mix";
}

TEST_F(SettingsAccessTest, EveryControlHasAName)
{
    desk->signIn(QStringLiteral("ada@example.org"));
    present();
    for (const QString &tab : allTabs) {
        SettingsDesk::showTab(tab);
        for (QAbstractButton *button : SettingsDesk::parts<QAbstractButton>()) {
            // The search field's magnifying glass is no control.
            EXPECT_TRUE(!button->isEnabled() || !accessibleName(button).isEmpty())
                << qPrintable(tab) << button->metaObject()->className();
        }
    }
    SettingsDesk::showTab(allTabs[0]);
    EXPECT_NE(SettingsDesk::named<QPushButton>(QStringLiteral("Capture full screen: Alt+Super+1")), nullptr);
    const auto *reset = SettingsDesk::named<QToolButton>(QStringLiteral("Reset to default"));
    ASSERT_NE(reset, nullptr);
    EXPECT_EQ(reset->accessibleDescription(), u"Capture full screen");
    EXPECT_NE(SettingsDesk::named<QWidget>(QStringLiteral("Open the editor in")), nullptr);
    auto *tabs = SettingsDesk::window()->findChild<SettingsTabBar *>();
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(tabs);
    EXPECT_EQ(list->role(), QAccessible::PageTabList);
    ASSERT_GE(list->childCount(), 3);
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), u"Template");
}

/// Every text is half as long again, with words as long as German has.
class LongerTexts : public QTranslator {
public:
    LongerTexts() { QCoreApplication::installTranslator(this); }
    LongerTexts(const LongerTexts &) = delete;
    LongerTexts &operator=(const LongerTexts &) = delete;
    ~LongerTexts() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (!QByteArrayView(context).startsWith("lumenfold::")) {
            return {};
        }
        const QString source = QString::fromUtf8(text);
        return source + u' ' + source.left(source.size() / 2).remove(u' ');
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
};

class LongTextsTest : public SettingsWindowTest {
protected:
    /// Everything on the page has the room that it needs, and stands inside the window.
    static void judge()
    {
        QDialog *window = SettingsDesk::window();
        EXPECT_EQ(window->size(), QSize(520, 460));
        for (const QLabel *label : SettingsDesk::parts<QLabel>()) {
            if (qobject_cast<const PathLabel *>(label) != nullptr) {
                continue;
            }
            const auto fits = [label] {
                return label->wordWrap() ? label->heightForWidth(label->width()) <= label->height()
                                         : label->sizeHint().width() <= label->width();
            };
            EXPECT_TRUE(waitFor(fits)) << qPrintable(label->text());
            expectInside(label);
        }
        for (const QAbstractButton *button : SettingsDesk::parts<QAbstractButton>()) {
            if (!button->text().isEmpty()) {
                EXPECT_GE(button->width(), button->minimumSizeHint().width()) << qPrintable(button->text());
            }
            expectInside(button);
        }
        const auto *tabs = window->findChild<SettingsTabBar *>();
        for (int index = 0; index < tabs->count(); ++index) {
            EXPECT_GE(tabs->tabRect(index).width(),
                      tabs->fontMetrics().horizontalAdvance(tabs->tabText(index)) * 8 / 10);
        }
        EXPECT_LE(tabs->width(), window->width());
    }

    static void expectInside(const QWidget *widget)
    {
        const QDialog *window = SettingsDesk::window();
        const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
        EXPECT_GE(place.left(), 0);
        EXPECT_LE(place.right(), window->width() - 1) << widget->metaObject()->className();
    }

    const LongerTexts german;
};

TEST_F(LongTextsTest, NothingIsCutOff)
{
    present();
    for (const bool isSignedIn : {false, true}) {
        if (isSignedIn) {
            desk->signIn(QStringLiteral("a.long.name.of.somebody@mail.department.example.org"));
        }
        auto *tabs = SettingsDesk::window()->findChild<SettingsTabBar *>();
        for (int index = 0; index < tabs->count(); ++index) {
            tabs->setCurrentIndex(index);
            judge();
        }
    }
}

TEST_F(SettingsAccessTest, NothingIsCutOffInEnglishEither)
{
    present();
    const auto *page = SettingsDesk::window()->findChild<GeneralSettingsView *>();
    EXPECT_LE(page->widget()->minimumSizeHint().width(), page->viewport()->width());
}

} // namespace
} // namespace lumenfold::test

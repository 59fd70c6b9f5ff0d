#include "service/apikey/ApiKeySetupWindowController.h"

#include "app/theme/Spinner.h"
#include "service/apikey/LinkButton.h"
#include "service/apikey/NoticeRow.h"
#include "tests/components/account/AccountFixture.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

class ApiKeySetupTest : public AccountFixture {
protected:
    void present()
    {
        controller.present();
        ASSERT_TRUE(waitFor([this] { return hasKeyboard(window()); }));
    }

    [[nodiscard]] static QDialog *window()
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        for (QWidget *each : all) {
            if (auto *dialog = qobject_cast<QDialog *>(each); dialog != nullptr && dialog->isVisible()) {
                return dialog;
            }
        }
        return nullptr;
    }
    [[nodiscard]] static int windowCount()
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        return static_cast<int>(
            std::ranges::count_if(all, [](QWidget *each) { return qobject_cast<QDialog *>(each) != nullptr; }));
    }

    template <typename Widget>
    [[nodiscard]] static Widget *part()
    {
        return window()->findChild<Widget *>();
    }
    [[nodiscard]] static QLineEdit *field() { return part<QLineEdit>(); }
    [[nodiscard]] static QPushButton *button() { return part<QPushButton>(); }

    /// The message of the notice that is seen, if one is.
    [[nodiscard]] static QString notice()
    {
        const auto rows = window()->findChildren<NoticeRow *>();
        for (const NoticeRow *row : rows) {
            if (row->isVisible()) {
                return row->message();
            }
        }
        return {};
    }

    static void press(int key)
    {
        QWidget *focused = QApplication::focusWidget();
        ASSERT_NE(focused, nullptr);
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(focused, &down);
    }

    FakeAppearance appearance;
    FakeWorkspace workspace;
    ApiKeySetupWindowController controller{
        {.auth = auth, .config = config, .appearance = appearance, .workspace = workspace}};
};

TEST_F(ApiKeySetupTest, IsASmallFixedFloatingWindowInTheMiddle)
{
    present();
    EXPECT_EQ(window()->windowTitle(), u"Connect to LumenFold");
    EXPECT_EQ(window()->width(), 420);
    EXPECT_EQ(window()->minimumSize(), window()->maximumSize());
    const Qt::WindowFlags flags = window()->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    const QPoint off = window()->frameGeometry().center() - window()->screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 40);
    EXPECT_EQ(workspace.activations, 1);
}

TEST_F(ApiKeySetupTest, ItsBlocksStandAsTheyShould)
{
    present();
    const QWidget *view = part<ApiKeySetupView>();
    auto labels = view->findChildren<QLabel *>();
    labels.removeIf([](const QLabel *label) { return !label->isVisible(); });
    QStringList seen;
    for (const QLabel *label : labels) {
        seen.append(label->text());
    }
    EXPECT_THAT(seen,
                ::testing::ElementsAre(
                    QStringLiteral("Connect to LumenFold"),
                    QStringLiteral("Paste your personal API key to save screenshots straight to your LumenFold assets. "
                                   "Capturing, copying, and saving to disk all work without it."),
                    QStringLiteral("API key")));
    EXPECT_EQ(part<LinkButton>()->text(), u"Get your API key");
    EXPECT_EQ(field()->placeholderText(), u"Paste your key here");
    EXPECT_EQ(field()->echoMode(), QLineEdit::Password);
    EXPECT_EQ(button()->text(), u"Connect");
    EXPECT_TRUE(field()->hasFocus());
    EXPECT_EQ(notice(), QString());

    // 24 points around, 16 between two blocks.
    const auto top = [view](const QWidget *widget) { return widget->mapTo(view, QPoint(0, 0)).y(); };
    const auto bottom = [&](const QWidget *widget) { return top(widget) + widget->height(); };
    const QWidget *heading = labels[0];
    const QWidget *explanation = labels[1];
    EXPECT_EQ(heading->mapTo(view, QPoint(0, 0)), QPoint(24, 24));
    EXPECT_EQ(heading->width(), 372);
    EXPECT_EQ(top(explanation), bottom(heading) + 16);
    EXPECT_EQ(top(part<LinkButton>()), bottom(explanation) + 16);
    EXPECT_EQ(top(field()->parentWidget()), bottom(part<LinkButton>()) + 16);
    EXPECT_EQ(top(button()), bottom(field()) + 16);
    EXPECT_EQ(view->height(), bottom(button()) + 24);
    // Every line of the explanation is seen.
    EXPECT_GE(explanation->height(), labels[1]->heightForWidth(explanation->width()));
}

TEST_F(ApiKeySetupTest, BlanksAreNoKey)
{
    present();
    EXPECT_FALSE(button()->isEnabled());
    field()->setText(QStringLiteral("   "));
    EXPECT_FALSE(button()->isEnabled());
    press(Qt::Key_Return);
    EXPECT_FALSE(part<ApiKeySetupView>()->isValidating());
    EXPECT_TRUE(service.requests().isEmpty());
    field()->setText(QStringLiteral(" k "));
    EXPECT_TRUE(button()->isEnabled());
}

TEST_F(ApiKeySetupTest, ReturnTwiceIsOneSignIn)
{
    present();
    service.behave(Endpoint::user, {.way = Way::silence});
    field()->setText(QStringLiteral(" demo-key "));
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_FALSE(button()->isEnabled());
    EXPECT_TRUE(part<Spinner>()->isSpinning());
    EXPECT_TRUE(waitFor([this] { return notice() == unreachable(); }));
    EXPECT_EQ(service.begun(Endpoint::user), 1);
    EXPECT_FALSE(part<Spinner>()->isSpinning());
    EXPECT_TRUE(button()->isEnabled());
}

TEST_F(ApiKeySetupTest, AWrongKeyIsToldOfAndACorrectedOneConnects)
{
    present();
    const int height = window()->height();
    field()->setText(QStringLiteral("wrong"));
    press(Qt::Key_Return);
    EXPECT_TRUE(waitFor([this] { return notice() == invalidKey(); }));
    EXPECT_EQ(field()->text(), u"wrong");
    EXPECT_TRUE(waitFor([&] { return window()->height() > height; }));

    field()->setText(QStringLiteral("demo-key"));
    press(Qt::Key_Return);
    // At once, before the service has said anything.
    EXPECT_EQ(notice(), QString());
    EXPECT_TRUE(waitFor([] { return windowCount() == 0; }));
    EXPECT_EQ(auth.apiKey(), QStringLiteral("demo-key"));
    EXPECT_EQ(daemon->items().size(), 1);

    // The next one is another one.
    present();
    EXPECT_EQ(field()->text(), QString());
}

TEST_F(ApiKeySetupTest, PresentingAgainBringsTheSameWindowForward)
{
    present();
    field()->setText(QStringLiteral("half a k"));
    const QDialog *first = window();
    present();
    EXPECT_EQ(windowCount(), 1);
    EXPECT_EQ(workspace.activations, 2);
    window()->close();
    EXPECT_EQ(window(), nullptr);
    present();
    EXPECT_EQ(window(), first);
    EXPECT_EQ(field()->text(), u"half a k");
}

TEST_F(ApiKeySetupTest, ClosingDoesNotCallOffTheSignIn)
{
    present();
    service.behave(Endpoint::user, {.pause = 100ms});
    field()->setText(QStringLiteral("demo-key"));
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(waitFor([this] { return auth.isSignedIn(); }));
    EXPECT_TRUE(waitFor([] { return windowCount() == 0; }));
}

TEST_F(ApiKeySetupTest, TheLinkOpensThePageWithTheKeys)
{
    present();
    press(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), part<LinkButton>());
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier);
    QApplication::sendEvent(part<LinkButton>(), &down);
    QApplication::sendEvent(part<LinkButton>(), &up);
    EXPECT_EQ(workspace.openedAddresses, QList<QUrl>{config.apiKeyURL()});
}

TEST_F(ApiKeySetupTest, ADesktopWithoutAKeyringIsToldOfUntilItHasOne)
{
    daemon->kill();
    present();
    service.behave(Endpoint::user, answering(401));
    // Nobody asks a keyring that is gone before there is something to store.
    QCoro::waitFor(keychain.unlock(AuthService::keychainKey));
    EXPECT_TRUE(waitFor([] { return notice().contains(QStringLiteral("gnome-keyring")); }));
    daemon->start();
    EXPECT_TRUE(waitFor([] { return notice().isEmpty(); }));
}

TEST_F(ApiKeySetupTest, GoesAwayWithTheProgramWhileItValidates)
{
    auto another = std::make_unique<ApiKeySetupWindowController>(ApiKeySetupView::Collaborators{
        .auth = auth, .config = config, .appearance = appearance, .workspace = workspace});
    another->present();
    service.behave(Endpoint::user, {.pause = 50ms});
    field()->setText(QStringLiteral("demo-key"));
    button()->click();
    another.reset();
    EXPECT_TRUE(waitFor([this] { return auth.isSignedIn(); }));
}

} // namespace
} // namespace lumenfold::test

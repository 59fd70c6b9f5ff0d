/// What the window says when there is no page, and how the user gets on.
#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/editor/StudioControllerFixture.h"

#include <QLabel>
#include <QPushButton>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StudioTroubleTest : public StudioControllerTest {
protected:
    void waitForNotice(const QString &title)
    {
        waitUntil("the notice", [&] { return window()->showsNotice(); });
        QStringList texts;
        const auto labels = window()->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            texts.append(label->text());
            EXPECT_TRUE(!label->isVisible() || label->height() >= label->heightForWidth(label->width()))
                << qPrintable(label->text());
        }
        EXPECT_TRUE(texts.contains(title)) << qPrintable(texts.join(u'\n'));
    }
    void press(const QString &text)
    {
        const auto buttons = window()->findChildren<QPushButton *>();
        for (QPushButton *button : buttons) {
            if (button->text() == text) {
                button->click();
                return;
            }
        }
        FAIL() << "no button " << qPrintable(text);
    }
    void fail(ViewTrouble trouble)
    {
        expectLogLine(u"LumenFold: the editor's page is not there: it broke"_s);
        view().client().failed(trouble, u"it broke"_s);
    }
};

QList<QSize> sizesOfTexts(const StudioWindow &window)
{
    QList<QSize> sizes;
    const auto labels = window.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        sizes.append(label->minimumSize());
    }
    return sizes;
}

TEST(StudioNoticeTest, LooksTheSameAfterAnother)
{
    const StudioWindow::Notice first{u"A title of several words"_s, u"Words in a row. "_s.repeated(20), {}};
    const StudioWindow::Notice second{u"Short"_s, u"And words in a row. "_s.repeated(6), {}};
    StudioWindow once;
    once.showNotice(second);
    StudioWindow twice;
    twice.showNotice(first);
    EXPECT_NE(sizesOfTexts(twice), sizesOfTexts(once));
    twice.showNotice(second);
    EXPECT_EQ(sizesOfTexts(twice), sizesOfTexts(once));
}

TEST(StudioNoticeTest, LinesOfATextAreAboutEquallyLong)
{
    StudioWindow window;
    // One word more than a line of the longest kind has.
    const auto width = [&](const QString &text) {
        window.showNotice({u"Title"_s, text, {}});
        return sizesOfTexts(window).last();
    };
    QString line = u"word"_s;
    while (width(line + u" word"_s).height() == width(u"word"_s).height()) {
        line += u" word"_s;
    }
    EXPECT_LT(width(line + u" word"_s).width(), width(line).width() * 3 / 4);
}

TEST_F(StudioTroubleTest, AMissingModuleIsSaidAndTheBrowserIsOffered)
{
    moduleTrouble = EditorModuleTrouble{EditorModuleTrouble::Kind::missing, u"no such file"_s};
    expectLogLine(u"LumenFold: the editor cannot be opened: no such file"_s);
    present(4, u"1"_s);
    waitForNotice(u"The editor is not installed"_s);
    EXPECT_EQ(config.editorLocation(), EditorLocation::macApp);
    press(u"Always Edit in the Browser"_s);
    EXPECT_TRUE(waitFor([&] { return window() == nullptr; }));
    EXPECT_EQ(config.editorLocation(), EditorLocation::browser);
}

TEST_F(StudioTroubleTest, AModuleThatIsInstalledMeanwhileIsFound)
{
    moduleTrouble = EditorModuleTrouble{EditorModuleTrouble::Kind::missing, u"no such file"_s};
    expectLogLine(u"LumenFold: the editor cannot be opened: no such file"_s);
    const Image image = present(4, u"1"_s);
    waitForNotice(u"The editor is not installed"_s);
    moduleTrouble.reset();
    press(u"Try Again"_s);
    waitForLoads(1);
    view().show(page.loads.last());
    EXPECT_FALSE(window()->showsNotice());
    sayLoaded();
    EXPECT_TRUE(isDelivered(image, 0));
}

TEST_F(StudioTroubleTest, TheSuperuserIsToldWhy)
{
    moduleTrouble = EditorModuleTrouble{EditorModuleTrouble::Kind::superuser, u"root"_s};
    expectLogLine(u"LumenFold: the editor cannot be opened: root"_s);
    present(4, u"1"_s);
    waitForNotice(u"The editor does not open for the superuser"_s);
}

TEST_F(StudioTroubleTest, ASystemWithoutSandboxesIsSaid)
{
    moduleTrouble = EditorModuleTrouble{EditorModuleTrouble::Kind::noSandbox, u"no namespaces"_s};
    expectLogLine(u"LumenFold: the editor cannot be opened: no namespaces"_s);
    present(4, u"1"_s);
    waitForNotice(u"The editor cannot be opened safely"_s);
}

TEST_F(StudioTroubleTest, WithoutANetworkTheUserMayTryAgain)
{
    const Image image = present(4, u"1"_s);
    waitForLoads(1);
    fail(ViewTrouble::unreachable);
    waitForNotice(u"The editor cannot be reached"_s);
    press(u"Try Again"_s);
    waitForLoads(2);
    view().show(page.loads.last());
    EXPECT_FALSE(window()->showsNotice());
    sayLoaded();
    EXPECT_TRUE(isDelivered(image, 0));
}

TEST_F(StudioTroubleTest, PresentingOnceMoreTriesAgainToo)
{
    present(4, u"1"_s);
    waitForLoads(1);
    fail(ViewTrouble::unreachable);
    waitForNotice(u"The editor cannot be reached"_s);
    const Image second = presentAndLoad(5, u"2"_s);
    EXPECT_FALSE(window()->showsNotice());
    sayLoaded();
    EXPECT_TRUE(isDelivered(second, 0));
}

TEST_F(StudioTroubleTest, AServerThatCannotBeTrustedIsSaid)
{
    present(4, u"1"_s);
    waitForLoads(1);
    fail(ViewTrouble::untrustedServer);
    waitForNotice(u"The editor's server cannot be trusted"_s);
}

TEST_F(StudioTroubleTest, APageWhoseProcessEndsCanBeReloadedWithItsScreenshot)
{
    const Image image = presentAndLoad(4, u"1"_s);
    sayLoaded();
    fail(ViewTrouble::ended);
    waitForNotice(u"The editor has stopped working"_s);
    press(u"Reload"_s);
    waitForLoads(2);
    view().show(page.loads.last());
    sayLoaded();
    EXPECT_TRUE(waitFor([&] { return isDelivered(image, 1); }));
    exportImage(dataURLOf(picture(9)));
    EXPECT_TRUE(waitFor([&] { return exported.size() == 1; }));
}

TEST_F(StudioTroubleTest, AServerThatSaysNothingIsGivenUp)
{
    makeController(30ms);
    expectLogLine(u"LumenFold: the editor's page is not there: no answer in time"_s);
    present(4, u"1"_s);
    waitForNotice(u"The editor cannot be reached"_s);
    EXPECT_EQ(page.stops, 1);
}

} // namespace
} // namespace lumenfold::test

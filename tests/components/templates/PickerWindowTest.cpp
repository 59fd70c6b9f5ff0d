#include "tests/components/templates/PickerWindow.h"

#include "service/AuthService.h"
#include "service/ServiceError.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>

namespace lumenfold::test {
namespace {

const QString selected = QStringLiteral("Applied to every screenshot you open in LumenFold.");
const QString notSelected = QStringLiteral("Screenshots open in the editor with no template.");
const QString clear = QStringLiteral("Clear");
const QString retry = QStringLiteral("Retry");

/// Counts the releases of a button over a widget.
class Releases : public QObject {
public:
    explicit Releases(QWidget &over) { over.installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::MouseButtonRelease ? 1 : 0;
        return false;
    }
};

TEST_F(PickerWindowTest, AClickSelectsMovesToTheFrontAndAnotherClears)
{
    openLoaded();
    EXPECT_TRUE(isShown(QStringLiteral("Default template")));
    EXPECT_TRUE(isShown(notSelected));
    EXPECT_EQ(button(clear), nullptr);

    pointer.click(cellOnScreen(2));
    ASSERT_TRUE(waitFor([this] { return store.selectedId() == QStringLiteral("t3"); }));
    EXPECT_EQ(shownNames().first(3),
              QStringList({QStringLiteral("Template 3"), QStringLiteral("Template 1"), QStringLiteral("Template 2")}));
    EXPECT_TRUE(isShown(selected));
    EXPECT_NE(button(clear), nullptr);

    pointer.click(cellOnScreen(0));
    ASSERT_TRUE(waitFor([this] { return !store.hasSelection(); }));
    EXPECT_EQ(shownNames().value(2), QStringLiteral("Template 3"));
    EXPECT_TRUE(isShown(notSelected));
}

TEST_F(PickerWindowTest, TheClearButtonClears)
{
    store.select(service.templates.at(1));
    openLoaded();
    EXPECT_EQ(shownNames().constFirst(), QStringLiteral("Template 2"));
    pointer.click(onScreen(*button(clear), button(clear)->rect().center()));
    ASSERT_TRUE(waitFor([this] { return !store.hasSelection(); }));
    EXPECT_EQ(shownNames().value(1), QStringLiteral("Template 2"));
    EXPECT_TRUE(isShown(notSelected));
    EXPECT_EQ(button(clear), nullptr);
}

TEST_F(PickerWindowTest, TheGapsBetweenCellsAreNobodys)
{
    openLoaded();
    const QRect cell = grid().cellRect(grid().model()->index(0, 0));
    const QPoint gap(cell.right() + TemplateGrid::halfGap, cell.center().y());
    EXPECT_FALSE(grid().indexAt(gap).isValid());
    EXPECT_EQ(grid().indexAt(cell.center()).row(), 0);
    const Releases releases(*grid().viewport());
    pointer.click(onScreen(*grid().viewport(), gap));
    // Between a click that a window manager replays and one that comes in the same moment, events get lost.
    ASSERT_TRUE(waitFor([&] { return releases.count == 1; }));
    EXPECT_FALSE(store.hasSelection());
    pointer.click(cellOnScreen(1));
    ASSERT_TRUE(waitFor([this] { return store.hasSelection(); }));
    EXPECT_EQ(store.selectedId(), QStringLiteral("t2"));
}

TEST_F(PickerWindowTest, ColumnsAreAsManyAsHaveRoom)
{
    openLoaded();
    const auto index = [this](int row) { return grid().model()->index(row, 0); };
    for (int width = 180; width < 1000; width += 13) {
        window->setFixedWidth(width);
        ASSERT_TRUE(waitFor([&] { return picker->width() == width; }));
        const GridColumns columns = grid().columns();
        ASSERT_GE(columns.count, 1);
        EXPECT_TRUE(columns.width >= GridColumns::minimumWidth || columns.count == 1);
        EXPECT_LT(grid().viewport()->width() - columns.count * (columns.width + 12), columns.count + 2);
        EXPECT_EQ(grid().cellRect(index(0)).width(), columns.width);
        EXPECT_EQ(grid().visualRect(index(columns.count - 1)).top(), grid().visualRect(index(0)).top()) << width;
        EXPECT_GT(grid().visualRect(index(columns.count)).top(), grid().visualRect(index(0)).top()) << width;
    }
}

TEST(GridColumnsTest, HaveAMinimumWidthAndNoMaximum)
{
    const auto in = [](int room) {
        const GridColumns columns = GridColumns::in(room);
        return std::pair(columns.count, columns.width);
    };
    EXPECT_EQ(in(100), std::pair(1, 100));
    EXPECT_EQ(in(130), std::pair(1, 130));
    EXPECT_EQ(in(271), std::pair(1, 271));
    EXPECT_EQ(in(272), std::pair(2, 130));
    EXPECT_EQ(in(413), std::pair(2, 200));
    EXPECT_EQ(in(414), std::pair(3, 130));
    EXPECT_EQ(in(480), std::pair(3, 152));
    EXPECT_EQ(in(-5).first, 1);
}

TEST_F(PickerWindowTest, SearchingShowsWhatMatchesAndSaysWhenNothingDoes)
{
    openLoaded();
    search().setFocus();
    for (const char *key : {"space", "Shift+t", "e", "m", "p", "l", "a", "t", "e", "space", "4", "space"}) {
        keyboard.press(key);
    }
    ASSERT_TRUE(waitFor([this] { return search().text() == QStringLiteral(" Template 4 "); }));
    EXPECT_EQ(shownNames(), QStringList({QStringLiteral("Template 4"), QStringLiteral("Template 40")}));
    search().setText(QStringLiteral(" brochure "));
    EXPECT_TRUE(isShown(QStringLiteral("No templates match “brochure”")));
    EXPECT_FALSE(grid().isVisible());
    keyboard.press("Escape");
    ASSERT_TRUE(waitFor([this] { return search().text().isEmpty(); }));
    EXPECT_TRUE(grid().isVisible());
}

TEST_F(PickerWindowTest, TheSearchFieldHasAButtonThatEmptiesIt)
{
    openLoaded();
    const auto actions = search().actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_FALSE(actions.at(1)->isVisible());
    search().setText(QStringLiteral("x"));
    ASSERT_TRUE(actions.at(1)->isVisible());
    QWidget *clearButton = nullptr;
    for (QWidget *child : search().findChildren<QWidget *>()) {
        if (child->actions().contains(actions.at(1))) {
            clearButton = child;
        }
    }
    ASSERT_NE(clearButton, nullptr);
    pointer.click(onScreen(*clearButton, clearButton->rect().center()));
    EXPECT_TRUE(waitFor([this] { return search().text().isEmpty(); }));
}

TEST_F(PickerWindowTest, AFailureIsShownAndRetryFetchesAgain)
{
    open();
    EXPECT_TRUE(isShown(QStringLiteral("Loading templates…")));
    EXPECT_EQ(button(retry), nullptr);
    service.fail(ServiceError::server(500, QStringLiteral("oops")));
    EXPECT_TRUE(isShown(QStringLiteral("Server returned 500: oops")));
    ASSERT_NE(button(retry), nullptr);
    EXPECT_EQ(service.fetches, 1);
    pointer.click(onScreen(*button(retry), button(retry)->rect().center()));
    ASSERT_TRUE(waitFor([this] { return service.fetches == 2; }));
    EXPECT_TRUE(isShown(QStringLiteral("Loading templates…")));
    service.succeed();
    EXPECT_TRUE(grid().isVisible());
}

TEST_F(PickerWindowTest, WithoutAKeyTheDialogCanBeOpenedAndTheListComesAfterIt)
{
    isSignedIn = false;
    open();
    EXPECT_EQ(service.fetches, 0);
    EXPECT_TRUE(isShown(QStringLiteral("Connect with your API key to load templates.")));
    QPushButton *connect = button(QStringLiteral("Connect with API Key…"));
    ASSERT_NE(connect, nullptr);
    pointer.click(onScreen(*connect, connect->rect().center()));
    ASSERT_TRUE(waitFor([this] { return apiKeySetup.presentations == 1; }));
    isSignedIn = true;
    notifications.post(AuthService::authStateChangedNotification);
    EXPECT_EQ(service.fetches, 1);
    service.succeed();
    EXPECT_TRUE(grid().isVisible());
}

TEST_F(PickerWindowTest, EachShowingFetchesButBeingCoveredDoesNot)
{
    openLoaded();
    EXPECT_EQ(service.fetches, 1);
    picker->hide();
    picker->show();
    EXPECT_EQ(service.fetches, 2);
    service.succeed();
}

TEST_F(PickerWindowTest, ABodyOfAnyKindIsShownAsText)
{
    open();
    const QString body = QStringLiteral("<img src='file:///etc/passwd'><b>") + QString(1'000'000, u'w');
    service.fail(ServiceError::server(500, body));
    const auto labels = picker->findChildren<QLabel *>();
    const auto message = std::ranges::find_if(labels, [](const QLabel *label) {
        return label->text().startsWith(QStringLiteral("Server returned 500: <img"));
    });
    ASSERT_NE(message, labels.end());
    EXPECT_EQ((*message)->textFormat(), Qt::PlainText);
    EXPECT_LT((*message)->text().size(), 3000);
    EXPECT_FALSE((*message)->toolTip().contains(QStringLiteral("<img")));
    EXPECT_TRUE(waitFor([&] { return (*message)->width() <= picker->width(); }));
    EXPECT_EQ(window->size(), QSize(520, 416));
}

TEST_F(PickerWindowTest, ANameThatIsCutOffHasAToolTip)
{
    const QString longName = QStringLiteral("<b>A name that is much longer than its cell is wide</b>");
    service.templates.at(1).name = longName;
    openLoaded();
    const auto ask = [this](int row) {
        const QPoint place = grid().cellRect(grid().model()->index(row, 0)).center();
        QHelpEvent event(QEvent::ToolTip, place, grid().viewport()->mapToGlobal(place));
        QApplication::sendEvent(grid().viewport(), &event);
        return QToolTip::text();
    };
    EXPECT_EQ(ask(0), QString());
    EXPECT_TRUE(ask(1).contains(longName.toHtmlEscaped()));
    QToolTip::hideText();
}

TEST_F(PickerWindowTest, LightAndDarkFollowTheDesktopAtOnce)
{
    openLoaded();
    const auto ground = [this] { return window->grab().toImage().pixelColor(3, 3).lightness(); };
    EXPECT_GT(ground(), 200);
    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_LT(ground(), 60);
    EXPECT_LT(picker->palette().color(QPalette::Window).lightness(), 60);
    const QColor subtitle = picker->findChildren<QLabel *>().at(1)->palette().color(QPalette::WindowText);
    EXPECT_GT(subtitle.lightness(), 128);
    appearance.setColorScheme(ColorScheme::light);
    EXPECT_GT(ground(), 200);
}

} // namespace
} // namespace lumenfold::test

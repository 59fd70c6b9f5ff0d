#include "app/configuration/Palette.h"
#include "cards/face/ActionPanel.h"
#include "cards/face/DraggableImageView.h"
#include "platform/image/EncodingPool.h"
#include "tests/support/desktop/Wait.h"
#include "tests/unit/cardface/CardFaceFixture.h"
#include "tests/unit/image/TestPictures.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QThreadPool>

#include <cstdlib>

namespace lumenfold::test {
namespace {

const QString edit = QStringLiteral("Edit Screenshot");
const QString saveTitle = QStringLiteral("Save");
const QString copyTitle = QStringLiteral("Copy");
const QString dismissTitle = QStringLiteral("Dismiss");
const QString pinTitle = QStringLiteral("Pin as separate card");
const QString bringToFrontTitle = QStringLiteral("Bring to front");

class PreviewViewTest : public CardFaceTest {
protected:
    /// On the content, beside every button.
    [[nodiscard]] QPoint besideTheButtons() const { return view->content().topLeft() + QPoint(20, 20); }
};

TEST_F(PreviewViewTest, theContentIsInsetByTheHitMargin)
{
    makeCard();
    EXPECT_EQ(view->content(), QRect(30, 30, 200, 150));
    EXPECT_EQ(image().geometry(), view->content());

    makeCard(PreviewCardVariant::pinned);
    EXPECT_EQ(view->content(), QRect(52, 52, 200, 150));
}

TEST_F(PreviewViewTest, aStackCardHasItsButtonsEightPointsFromTheUpperCorners)
{
    makeCard();

    EXPECT_EQ(buttonNamed(*view, dismissTitle)->geometry(), QRect(8, 8, 24, 24));
    EXPECT_EQ(buttonNamed(*view, pinTitle)->geometry(), QRect(260 - 8 - 24, 8, 24, 24));
}

TEST_F(PreviewViewTest, aPinnedCardHasACloseButtonAtTheUpperRightCornerAndNoPin)
{
    makeCard(PreviewCardVariant::pinned);

    EXPECT_EQ(buttonNamed(*view, dismissTitle)->geometry(), QRect(304 - 30 - 24, 30, 24, 24));
    EXPECT_EQ(buttonNamed(*view, pinTitle), nullptr);
}

TEST_F(PreviewViewTest, theCornerButtonsReportWhatTheyAreFor)
{
    makeCard();
    buttonNamed(*view, pinTitle)->click();
    buttonNamed(*view, dismissTitle)->click();

    EXPECT_EQ(reported, QStringList({QStringLiteral("pin"), QStringLiteral("dismiss")}));
}

TEST_F(PreviewViewTest, theActionsComeAndGoWithThePointer)
{
    makeCard();
    EXPECT_FALSE(isSeen(edit));

    enter(image());
    EXPECT_TRUE(view->isHovering());
    for (const QString &title : {edit, saveTitle, copyTitle}) {
        EXPECT_TRUE(isSeen(title));
    }
    const auto *panel = view->findChild<ActionPanel *>();
    EXPECT_TRUE(waitFor([panel] { return panel->opacity() == 1; }));

    leave(image());
    EXPECT_FALSE(isSeen(edit));
    EXPECT_GT(panel->opacity(), 0);
    EXPECT_TRUE(waitFor([panel] { return panel->opacity() == 0; }));
}

TEST_F(PreviewViewTest, theActionsAreGoneWhenTheCardComesBackFromBeingHidden)
{
    makeCard();
    enter(image());
    view->hide();
    view->show();

    EXPECT_FALSE(view->isHovering());
    EXPECT_FALSE(isSeen(edit));
}

TEST_F(PreviewViewTest, theActionsStandInTheMiddleOfTheCard)
{
    makeCard();

    // 200 wide with 12 on either side; 32, 4 and 28 high of 150.
    EXPECT_EQ(buttonNamed(*view, edit)->geometry(), QRect(12, 43, 176, 32));
    EXPECT_EQ(buttonNamed(*view, saveTitle)->geometry(), QRect(12, 79, 86, 28));
    EXPECT_EQ(buttonNamed(*view, copyTitle)->geometry(), QRect(102, 79, 86, 28));
}

TEST_F(PreviewViewTest, theActionsDoWhatTheySay)
{
    makeCard();
    enter(image());
    buttonNamed(*view, edit)->click();
    EXPECT_EQ(reported, QStringList({QStringLiteral("edit")}));

    buttonNamed(*view, copyTitle)->click();
    EXPECT_EQ(pasteboard.images, std::vector{model->image()});
}

TEST_F(PreviewViewTest, aCardBehindAnotherOneShowsNoActionsAndCatchesClicks)
{
    makeCard();
    model->setDeckBehind(true);
    enter(image());
    EXPECT_FALSE(isSeen(edit));
    ASSERT_TRUE(isSeen(bringToFrontTitle));
    EXPECT_EQ(buttonNamed(*view, bringToFrontTitle)->size(), view->content().size());

    doubleClick(*view, besideTheButtons());
    EXPECT_EQ(reported, QStringList({QStringLiteral("bringToFront"), QStringLiteral("bringToFront")}));

    model->setDeckBehind(false);
    EXPECT_TRUE(isSeen(edit));
    EXPECT_FALSE(isSeen(bringToFrontTitle));
}

TEST_F(PreviewViewTest, aCardOfACollapsedColumnShowsNoActions)
{
    makeCard();
    model->setCollapsed(true);
    enter(image());
    EXPECT_FALSE(isSeen(edit));
    EXPECT_FALSE(isSeen(bringToFrontTitle));

    model->setCollapsed(false);
    EXPECT_TRUE(isSeen(edit));
}

TEST_F(PreviewViewTest, aPinnedCardNeverShowsTheActions)
{
    makeCard(PreviewCardVariant::pinned);
    enter(image());
    EXPECT_FALSE(isSeen(edit));

    model->setDeckBehind(true);
    model->setDeckBehind(false);
    EXPECT_FALSE(isSeen(edit));
}

TEST_F(PreviewViewTest, aDoubleClickExpandsAndASingleOneDoesNothing)
{
    makeCard();
    click(*view, besideTheButtons());
    EXPECT_TRUE(reported.isEmpty());

    doubleClick(*view, besideTheButtons());
    EXPECT_EQ(reported, QStringList({QStringLiteral("expand")}));
}

TEST_F(PreviewViewTest, aDoubleClickBesideTheActionsIsThePictures)
{
    makeCard();
    enter(image());
    doubleClick(*view, besideTheButtons());
    EXPECT_EQ(reported, QStringList({QStringLiteral("expand")}));

    // On a button it is two clicks of that.
    reported.clear();
    doubleClick(*view, view->content().topLeft() + buttonNamed(*view, edit)->geometry().center());
    EXPECT_FALSE(reported.contains(QStringLiteral("expand")));
}

TEST_F(PreviewViewTest, aDoubleClickOnAPinnedCardExpandsIt)
{
    makeCard(PreviewCardVariant::pinned);
    doubleClick(*view, view->content().center());

    EXPECT_TRUE(reported.contains(QStringLiteral("expand")));
    EXPECT_EQ(reported.count(QStringLiteral("panBegan")), reported.count(QStringLiteral("panEnded")));
}

TEST_F(PreviewViewTest, aPinnedCardIsMovedByItsPictureAndResizedByItsCorners)
{
    makeCard(PreviewCardVariant::pinned);
    click(*view, view->content().center());
    EXPECT_EQ(reported, QStringList({QStringLiteral("panBegan"), QStringLiteral("panEnded")}));

    // The zone reaches 14 points out of the card.
    reported.clear();
    click(*view, view->content().topLeft() - QPoint(13, 13));
    EXPECT_EQ(reported, QStringList({QStringLiteral("resizeBegan 0"), QStringLiteral("resizeEnded")}));
    EXPECT_TRUE(view->pointerShape().contains(view->content().topLeft() - QPoint(13, 13)));
    EXPECT_FALSE(view->pointerShape().contains(view->content().topLeft() - QPoint(17, 17)));
}

TEST_F(PreviewViewTest, theButtonsGetThePointerAndTheShadowDoesNot)
{
    makeCard();

    EXPECT_TRUE(view->pointerShape().contains(QPoint(20, 20)));
    EXPECT_TRUE(view->pointerShape().contains(QPoint(240, 20)));
    EXPECT_TRUE(view->pointerShape().contains(view->content().center()));
    EXPECT_FALSE(view->pointerShape().contains(QPoint(130, 190)));
    EXPECT_FALSE(view->pointerShape().contains(QPoint(9, 9)));
}

TEST_F(PreviewViewTest, everythingSaysWhatItIsForUnderThePointer)
{
    makeCard();

    EXPECT_EQ(image().toolTip(), QStringLiteral("Drag to any app to upload this screenshot"));
    for (const QString &title : {edit, saveTitle, copyTitle, dismissTitle, pinTitle, bringToFrontTitle}) {
        ASSERT_NE(buttonNamed(*view, title), nullptr);
        EXPECT_EQ(buttonNamed(*view, title)->toolTip(), title);
    }
}

TEST_F(PreviewViewTest, theStatusStandsInTheMiddleOfTheUpperEdge)
{
    makeCard();
    auto *badge = view->findChild<QLabel *>();
    ASSERT_NE(badge, nullptr);
    EXPECT_FALSE(badge->isVisible());

    model->setStatus(PreviewModel::Uploading{});
    EXPECT_TRUE(badge->isVisible());
    EXPECT_EQ(badge->text(), QStringLiteral("Uploading…"));
    EXPECT_EQ(badge->y(), 0);
    EXPECT_LE(std::abs(badge->geometry().center().x() - 100), 1);

    model->setStatus(PreviewModel::Idle{});
    EXPECT_FALSE(badge->isVisible());
}

TEST_F(PreviewViewTest, thePictureIsDraggedOutAlsoFromBeneathTheActions)
{
    makeCard();
    enter(image());
    const QPoint from = besideTheButtons();
    QWidget *target = view->childAt(from);
    const QPoint to = from + QPoint(QApplication::startDragDistance() + 1, 0);
    QMouseEvent press(QEvent::MouseButtonPress, target->mapFrom(view.get(), from), view->mapToGlobal(from),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent move(QEvent::MouseMove, target->mapFrom(view.get(), to), view->mapToGlobal(to), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &press);
    QApplication::sendEvent(target, &move);

    EXPECT_TRUE(waitFor([this] { return drags.drags.size() == 1; }));
    EXPECT_EQ(drags.drags.front().source, &image());
    EXPECT_EQ(drags.drags.front().hotSpot, QPoint(20, 20));
}

TEST_F(PreviewViewTest, theScrimFollowsTheAppearance)
{
    makeCard();
    enter(image());
    const auto *panel = view->findChild<ActionPanel *>();
    ASSERT_TRUE(waitFor([panel] { return panel->opacity() == 1; }));
    const auto scrim = [this] { return view->grab().toImage().pixelColor(view->content().center().x(), 40); };
    // 92 % of grey and the rest of the picture, which is (0, 128, 128).
    EXPECT_NEAR(scrim().red(), 0.92 * 214, 2);
    EXPECT_NEAR(scrim().green(), 0.92 * 214 + 0.08 * 128, 2);

    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_NEAR(scrim().red(), 0.92 * 54, 2);
}

TEST_F(PreviewViewTest, theEdgeIsSeenOnAGroundOfThePicturesOwnColour)
{
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        appearance.setColorScheme(scheme);
        for (const QColor color : {Qt::black, Qt::white}) {
            makeCard(PreviewCardVariant::stack, picture({40, 30}, color));
            const QImage seen = view->grab().toImage();
            const QPoint middle = view->content().center();
            ASSERT_EQ(seen.pixelColor(middle), color);
            const QColor edge = seen.pixelColor(view->content().left(), middle.y());
            EXPECT_GE(std::abs(edge.lightness() - color.lightness()), 40);
        }
    }
}

TEST_F(PreviewViewTest, withoutACompositorThereIsNoShadowAndNoSoftEdge)
{
    makeCard();
    const auto pixel = [this](QPoint place) {
        QImage seen(view->size(), QImage::Format_ARGB32_Premultiplied);
        seen.fill(Qt::transparent);
        view->render(&seen, {}, {}, QWidget::DrawChildren);
        return seen.pixelColor(place);
    };
    const QPoint shadow(130, 190);
    const QPoint corner = view->content().topLeft() + QPoint(1, 148);
    EXPECT_GT(pixel(shadow).alpha(), 0);
    EXPECT_LT(pixel(corner).alpha(), 255);

    panels.setTranslucencyAvailable(false);
    EXPECT_EQ(pixel(shadow).alpha(), 0);
    EXPECT_EQ(pixel(corner).alpha(), 255);
    EXPECT_FALSE(view->opaqueShape(1).contains(shadow));
    EXPECT_TRUE(view->opaqueShape(1).contains(QPoint(20, 20)));
    EXPECT_TRUE(view->opaqueShape(2).contains(QPoint(40, 40)));
}

TEST_F(PreviewViewTest, aCardMayGoAwayInsideItsOwnClick)
{
    makeCard();
    model->onDismiss = [this] { view.release()->deleteLater(); };
    buttonNamed(*view, dismissTitle)->click();
    EXPECT_EQ(view, nullptr);
    // While what it was made with is still there.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(PreviewViewTest, aLargePictureWhoseFileIsBrokenIsReported)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("card.png"));
    QByteArray png = Image::fromPixels(noisePicture({800, 600})).pngData().value();
    png[png.size() / 2] = static_cast<char>(~png[png.size() / 2]);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(png) == png.size());
    file.close();
    const Image broken = Image::fromPngFile(path);
    ASSERT_FALSE(broken.isNull()) << "too long to be read when the program starts";

    bool isReported = false;
    DraggableImageView picture(broken, {.onUnreadable = [&] { isReported = true; }}, panels, nullptr);
    picture.resize(200, 150);
    picture.grab();
    EXPECT_TRUE(waitFor([&] { return isReported; }));
}

TEST_F(PreviewViewTest, aPictureWhoseFileGoesWhileItIsShownStays)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("card.png"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(Image::fromPixels(plainPicture({800, 600}, Qt::red)).pngData().value());
    file.close();
    bool isReported = false;
    DraggableImageView picture(Image::fromPngFile(path), {.onUnreadable = [&] { isReported = true; }}, panels, nullptr);
    picture.resize(200, 150);
    const auto middle = [&] { return picture.grab().toImage().pixelColor(100, 75); };
    ASSERT_TRUE(waitFor([&] { return middle() == Qt::red; }));
    ASSERT_TRUE(QFile::resize(path, 10));
    picture.resize(400, 300);
    picture.grab();
    backgroundPool().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(isReported);
    EXPECT_EQ(picture.grab().toImage().pixelColor(200, 150), Qt::red);
}

} // namespace
} // namespace lumenfold::test

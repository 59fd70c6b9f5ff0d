#include "cards/StackControlState.h"
#include "cards/face/DraggableImageView.h"
#include "cards/face/StackControl.h"
#include "tests/support/desktop/Wait.h"
#include "tests/unit/cardface/CardFaceFixture.h"

#include <QAccessible>
#include <QLabel>

namespace lumenfold::test {
namespace {

/// What a screen reader does, which needs neither the pointer nor the keyboard focus.
void pressByAssistiveTechnology(QWidget &control)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&control);
    ASSERT_NE(accessible, nullptr);
    ASSERT_NE(accessible->actionInterface(), nullptr);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

/// The names of the buttons that assistive technologies find in a view, in order.
QStringList buttonsListedIn(QAccessibleInterface *part)
{
    QStringList names;
    for (int index = 0; index < part->childCount(); ++index) {
        QAccessibleInterface *child = part->child(index);
        EXPECT_EQ(part->indexOfChild(child), index);
        if (child->role() == QAccessible::Button) {
            names.append(child->text(QAccessible::Name));
        }
        names.append(buttonsListedIn(child));
    }
    return names;
}

class AccessibleFaceTest : public CardFaceTest {
protected:
    [[nodiscard]] QStringList buttonsListed() const
    {
        return buttonsListedIn(QAccessible::queryAccessibleInterface(view.get()));
    }
    [[nodiscard]] QAccessibleActionInterface &actionsOfThePicture() const
    {
        return *QAccessible::queryAccessibleInterface(&image())->actionInterface();
    }

    const QStringList theActions{QStringLiteral("Edit Screenshot"), QStringLiteral("Save"), QStringLiteral("Copy")};
    const QStringList theCorners{QStringLiteral("Dismiss"), QStringLiteral("Pin as separate card")};
};

TEST_F(AccessibleFaceTest, everyControlHasANameAndARole)
{
    makeCard();
    model->setStatus(PreviewModel::Uploaded{QUrl(QStringLiteral("https://files.example/picture.png"))});
    const auto buttons = view->findChildren<QAbstractButton *>();
    EXPECT_EQ(buttons.size(), 7);
    for (QAbstractButton *button : buttons) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty());
        EXPECT_EQ(accessible->role(), QAccessible::Button) << qPrintable(button->accessibleName());
        EXPECT_EQ(button->focusPolicy(), Qt::NoFocus);
    }
}

TEST_F(AccessibleFaceTest, theActionsCanBePressedWithoutThePointer)
{
    makeCard();
    pressByAssistiveTechnology(*buttonNamed(*view, QStringLiteral("Edit Screenshot")));
    EXPECT_TRUE(waitFor([this] { return reported == QStringList({QStringLiteral("edit")}); }));

    pressByAssistiveTechnology(*buttonNamed(*view, QStringLiteral("Dismiss")));
    EXPECT_TRUE(waitFor([this] { return reported.contains(QStringLiteral("dismiss")); }));
}

TEST_F(AccessibleFaceTest, thePictureIsOneAndCanBeOpened)
{
    makeCard();
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&image());
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Screenshot, 40 × 30 pixels"));

    pressByAssistiveTechnology(image());
    EXPECT_EQ(reported, QStringList({QStringLiteral("expand")}));
}

TEST_F(AccessibleFaceTest, onlyTheButtonsThatAreThereAreListed)
{
    makeCard();
    EXPECT_EQ(buttonsListed(), theActions + theCorners);

    model->setStatus(PreviewModel::Uploaded{});
    EXPECT_EQ(buttonsListed(), theActions + theCorners);
    model->setStatus(PreviewModel::Uploaded{QUrl(QStringLiteral("https://files.example/picture.png"))});
    EXPECT_EQ(buttonsListed(), theActions + QStringList(QStringLiteral("Done")) + theCorners);

    model->setStatus(PreviewModel::Idle{});
    model->setDeckBehind(true);
    EXPECT_EQ(buttonsListed(), QStringList(QStringLiteral("Bring to front")) + theCorners);
}

TEST_F(AccessibleFaceTest, actionsThatAreNotSeenDoNotSayThatTheyShow)
{
    makeCard();
    const auto *save = buttonNamed(*view, QStringLiteral("Save"));
    EXPECT_FALSE(save->isVisible());
    enter(image());
    EXPECT_TRUE(save->isVisible());
    leave(image());
    EXPECT_TRUE(waitFor([save] { return !save->isVisible(); }));
}

TEST_F(AccessibleFaceTest, thePictureOffersTheActionsThatComeWithThePointer)
{
    makeCard();
    EXPECT_EQ(actionsOfThePicture().actionNames(), QStringList(QAccessibleActionInterface::pressAction()) + theActions);
    actionsOfThePicture().doAction(QStringLiteral("Copy"));
    EXPECT_TRUE(waitFor([this] { return pasteboard.images == std::vector{model->image()}; }));
    actionsOfThePicture().doAction(QStringLiteral("Edit Screenshot"));
    EXPECT_TRUE(waitFor([this] { return reported == QStringList({QStringLiteral("edit")}); }));
    actionsOfThePicture().doAction(QStringLiteral("Fly"));

    model->setCollapsed(true);
    EXPECT_EQ(actionsOfThePicture().actionNames(), QStringList(QAccessibleActionInterface::pressAction()));
}

TEST_F(AccessibleFaceTest, aPinnedCardSaysSo)
{
    makeCard(PreviewCardVariant::pinned);
    EXPECT_EQ(image().accessibleName(), QStringLiteral("Pinned screenshot, 40 × 30 pixels"));
}

TEST_F(AccessibleFaceTest, theStatusIsText)
{
    makeCard();
    model->setStatus(PreviewModel::Failed{QStringLiteral("Upload failed")});
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(view->findChild<QLabel *>());
    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Upload failed"));
}

TEST_F(AccessibleFaceTest, thePillsCanBePressed)
{
    StackControlState state;
    int toggles = 0;
    state.onToggle = [&toggles] { ++toggles; };
    StackControlButton pill(state, appearance, panels);
    pill.resize(pill.sizeHint());
    pill.show();
    pressByAssistiveTechnology(pill);
    EXPECT_TRUE(waitFor([&] { return toggles == 1; }));
}

} // namespace
} // namespace lumenfold::test

#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::SizeIs;

class CardEditingTest : public CardsTest {
protected:
    const Image m_image = picture(8, 6);
    const Image m_source = picture(16, 12);
    const Image m_edited = picture(4, 3);

    void edit(const QString &id)
    {
        model(id).onEditRequested();
        ASSERT_THAT(editor.sessions, SizeIs(1));
    }
};

TEST_F(CardEditingTest, theEditorIsGivenTheEditorSource)
{
    controller->show(m_image, {.editorSourceImage = m_source, .editorSourceId = u"source"_s, .id = u"1"_s});

    edit(u"1"_s);
    EXPECT_EQ(editor.sessions[0].image, m_source);
    EXPECT_EQ(editor.sessions[0].screenshotId, u"source"_s);
}

TEST_F(CardEditingTest, anEditedImageBecomesANewCard)
{
    controller->show(m_image, {.editorSourceImage = m_source, .editorSourceId = u"source"_s, .id = u"1"_s});
    edit(u"1"_s);

    editor.sessions[0].onExport(m_edited);
    ASSERT_THAT(controller->cards(), SizeIs(2));
    const PreviewModel &added = *controller->cards().back()->model;
    EXPECT_EQ(added.variant(), PreviewCardVariant::stack);
    EXPECT_EQ(added.image(), m_edited);
    EXPECT_EQ(added.editorSourceImage(), m_source);
    EXPECT_EQ(added.editorSourceId(), u"source"_s);
    EXPECT_NE(added.screenshotId(), u"1"_s);
    EXPECT_EQ(store.images.value(added.screenshotId()), m_edited);
    EXPECT_EQ(store.manifest.size(), 2U);
}

TEST_F(CardEditingTest, anEditedImageReplacesItsCardWhenTheUserWantsThat)
{
    config.setReplaceCardOnEdit(true);
    controller->show(m_image, {.editorSourceImage = m_source, .editorSourceId = u"source"_s, .id = u"1"_s});
    edit(u"1"_s);

    editor.sessions[0].onExport(m_edited);
    ASSERT_EQ(ids(), QStringList({u"1"_s}));
    EXPECT_EQ(model(u"1"_s).image(), m_edited);
    EXPECT_EQ(model(u"1"_s).editorSourceImage(), m_source);
    EXPECT_EQ(model(u"1"_s).editorSourceId(), u"source"_s);
    EXPECT_EQ(store.images.value(u"1"_s), m_edited);
    EXPECT_EQ(store.editorSourceImages.value(u"1"_s), m_source);
    EXPECT_EQ(store.manifest.size(), 1U);
    settle();
    EXPECT_THAT(panels.panels(), SizeIs(1));
}

TEST_F(CardEditingTest, aPinnedCardIsReplacedWhereItStands)
{
    config.setReplaceCardOnEdit(true);
    controller->showPinnedCard(m_image, {.frame = Rect{300, 200, 304, 204}, .id = u"1"_s});
    edit(u"1"_s);

    editor.sessions[0].onExport(m_edited);
    ASSERT_EQ(ids(), QStringList({u"1"_s}));
    EXPECT_EQ(model(u"1"_s).variant(), PreviewCardVariant::pinned);
    EXPECT_EQ(model(u"1"_s).image(), m_edited);
    EXPECT_EQ(panel(u"1"_s).frame(), (Rect{300, 200, 304, 204}));
}

TEST_F(CardEditingTest, theEditedImageOfACardThatIsGoneBecomesANewCard)
{
    config.setReplaceCardOnEdit(true);
    controller->show(m_image, {.id = u"1"_s});
    edit(u"1"_s);
    model(u"1"_s).onDismiss();
    settle();

    editor.sessions[0].onExport(m_edited);
    ASSERT_THAT(controller->cards(), SizeIs(1));
    EXPECT_NE(ids().first(), u"1"_s);
    EXPECT_EQ(controller->cards().front()->model->editorSourceImage(), m_image);
    EXPECT_EQ(controller->cards().front()->model->editorSourceId(), u"1"_s);
}

TEST_F(CardEditingTest, aSecondExportAfterAReplacementBecomesANewCard)
{
    config.setReplaceCardOnEdit(true);
    controller->show(m_image, {.id = u"1"_s});
    edit(u"1"_s);

    editor.sessions[0].onExport(m_edited);
    editor.sessions[0].onExport(m_edited);
    EXPECT_THAT(controller->cards(), SizeIs(2));
}

TEST_F(CardEditingTest, anExportAfterTheControllerIsGoneDoesNothing)
{
    controller->show(m_image, {.id = u"1"_s});
    edit(u"1"_s);
    controller.reset();
    store.calls.clear();

    editor.sessions[0].onExport(m_edited);
    EXPECT_THAT(store.calls, ::testing::IsEmpty());
}

} // namespace
} // namespace lumenfold::test

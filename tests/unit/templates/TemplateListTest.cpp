#include "service/templates/TemplateList.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

LumenfoldTemplate made(const QString &name, const std::optional<QString> &editedAt = std::nullopt)
{
    return {.id = QStringLiteral("id of ") + name, .name = name, .editedAt = editedAt};
}

QStringList namesIn(const TemplateList &list, const QString &searchText = {},
                    const std::optional<QString> &selectedId = std::nullopt)
{
    QStringList names;
    for (const std::size_t place : list.displayed(searchText, selectedId)) {
        names.append(list.at(place).name);
    }
    return names;
}

const QString may = QStringLiteral("2024-05-02T10:00:00Z");
const QString june = QStringLiteral("2024-06-01T09:00:00Z");

TEST(TemplateListTest, TheOneEditedLastComesFirstAndUndatedOnesLast)
{
    const TemplateList list({made(u"May"_qs, may), made(u"Undated"_qs), made(u"June"_qs, june)});
    EXPECT_EQ(namesIn(list), QStringList({u"June"_qs, u"May"_qs, u"Undated"_qs}));
}

TEST(TemplateListTest, DatesAreComparedAsTexts)
{
    const TemplateList list({made(u"digits"_qs, u"9"_qs), made(u"letters"_qs, u"later"_qs), made(u"year"_qs, june)});
    EXPECT_EQ(namesIn(list), QStringList({u"letters"_qs, u"digits"_qs, u"year"_qs}));
}

TEST(TemplateListTest, EquallyOldOnesStayInTheOrderOfTheService)
{
    std::vector<LumenfoldTemplate> templates;
    QStringList expected;
    for (int number = 0; number < 100; ++number) {
        // An empty text is as old as none.
        templates.push_back(made(QString::number(number), number % 2 == 0 ? std::optional(QString()) : std::nullopt));
        expected.append(QString::number(number));
    }
    EXPECT_EQ(namesIn(TemplateList(templates)), expected);
}

TEST(TemplateListTest, ASearchIgnoresCaseAndSpacesAround)
{
    const TemplateList list({made(u"Team logo"_qs), made(u"Banner"_qs)});
    EXPECT_EQ(namesIn(list, u"  LOGO "_qs), QStringList({u"Team logo"_qs}));
    EXPECT_EQ(namesIn(list, u"m l"_qs), QStringList({u"Team logo"_qs}));
    EXPECT_EQ(namesIn(list, u"   "_qs).size(), 2);
    EXPECT_EQ(namesIn(list, u"poster"_qs), QStringList());
}

TEST(TemplateListTest, ASearchIsForTextAndNotForAPattern)
{
    const TemplateList list({made(u"50 % (new)"_qs), made(u"5000"_qs)});
    EXPECT_EQ(namesIn(list, u"%"_qs), QStringList({u"50 % (new)"_qs}));
    EXPECT_EQ(namesIn(list, u".*"_qs), QStringList());
}

TEST(TemplateListTest, LettersOfEveryLanguageAreFound)
{
    const TemplateList list({made(u"ÜBERSCHRIFT"_qs), made(u"Cafe\u0301"_qs), made(u"Плакат"_qs)});
    EXPECT_EQ(namesIn(list, u"übersch"_qs).size(), 1);
    EXPECT_EQ(namesIn(list, u"CAFÉ"_qs).size(), 1) << "however the accent is written";
    EXPECT_EQ(namesIn(list, u"плак"_qs).size(), 1);
}

TEST(TemplateListTest, SpacesAreTrimmedAndLineBreaksAreNot)
{
    EXPECT_EQ(searchQuery(u" \t\u00a0\u3000logo  x\u2003 "_qs), u"logo  x");
    EXPECT_EQ(searchQuery(u" \nlogo\r\n "_qs), u"\nlogo\r\n");
    EXPECT_EQ(searchQuery(u"   "_qs), u"");
    EXPECT_EQ(searchQuery({}), u"");
}

TEST(TemplateListTest, TheSelectedOneComesFirstAndTheRestKeepTheirOrder)
{
    const TemplateList list({made(u"A"_qs, u"4"_qs), made(u"B"_qs, u"3"_qs), made(u"C"_qs, u"2"_qs)});
    EXPECT_EQ(namesIn(list, {}, u"id of B"_qs), QStringList({u"B"_qs, u"A"_qs, u"C"_qs}));
    EXPECT_EQ(namesIn(list, {}, u"id of C"_qs), QStringList({u"C"_qs, u"A"_qs, u"B"_qs}));
    EXPECT_EQ(namesIn(list, {}, u"id of A"_qs), QStringList({u"A"_qs, u"B"_qs, u"C"_qs}));
    EXPECT_EQ(namesIn(list, {}, u"gone"_qs), QStringList({u"A"_qs, u"B"_qs, u"C"_qs}));
}

TEST(TemplateListTest, ASelectedOneThatTheSearchLeavesOutIsNotShown)
{
    const TemplateList list({made(u"Logo"_qs, june), made(u"Logo old"_qs, may), made(u"Banner"_qs)});
    EXPECT_EQ(namesIn(list, u"logo"_qs, u"id of Banner"_qs), QStringList({u"Logo"_qs, u"Logo old"_qs}));
    EXPECT_EQ(namesIn(list, u"logo"_qs, u"id of Logo old"_qs), QStringList({u"Logo old"_qs, u"Logo"_qs}));
}

TEST(TemplateListTest, NothingOfNothing)
{
    EXPECT_TRUE(TemplateList().isEmpty());
    EXPECT_EQ(namesIn(TemplateList(), u"x"_qs, u"id"_qs), QStringList());
}

} // namespace
} // namespace lumenfold::test

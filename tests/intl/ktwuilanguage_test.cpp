#include "intl/ktwuilanguage.h"

#include <gtest/gtest.h>

namespace tov {
namespace {

// Built while static objects are built, in no known order with the library's own.
const String s_sDefaultTagAtLoad = KTWUILanguage::kDefaultLanguage.GetTag();
const KTWUILanguage s_tCopyAtLoad = KTWUILanguage::kDefaultLanguage;

TEST(KTWUILanguage, HasItsDefaultWhileStaticObjectsAreBuilt)
{
    EXPECT_EQ(s_sDefaultTagAtLoad, L"en-us");
    EXPECT_EQ(s_tCopyAtLoad.GetTag(), L"en-us");
    EXPECT_EQ(KTWUILanguage(), KTWUILanguage::kDefaultLanguage);
}

TEST(KTWUILanguage, KeepsTheTagAsGiven)
{
    for (const wchar_t* const pTag : {L"", L"fr", L"DE-de", L"not a tag"})
        EXPECT_EQ(KTWUILanguage(pTag).GetTag(), pTag);
}

TEST(KTWUILanguage, IsHebrewByTheFirstTwoCharactersOfTheTag)
{
    struct Row
    {
        int nLine;
        const wchar_t* pTag;
        bool bHebrew;
    };
    constexpr Row kRows[] = {
        {__LINE__, L"he", true},     {__LINE__, L"he-IL", true},    {__LINE__, L"HE-il", true},
        {__LINE__, L"hE", true},     {__LINE__, L"hen", true},  // kept: only two characters are compared
        {__LINE__, L"h", false},     {__LINE__, L"", false},        {__LINE__, L"iw", false},
        {__LINE__, L"en-he", false}, {__LINE__, L"\u0570e", false},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(KTWUILanguage(tRow.pTag).isHebrew(), tRow.bHebrew) << "row at line " << tRow.nLine;
    EXPECT_FALSE(KTWUILanguage::kDefaultLanguage.isHebrew());
}

TEST(KTWUILanguage, ComparesTagsWithoutCase)
{
    EXPECT_EQ(KTWUILanguage(L"EN-US"), KTWUILanguage::kDefaultLanguage);
    EXPECT_NE(KTWUILanguage(L"en"), KTWUILanguage::kDefaultLanguage);
    EXPECT_NE(KTWUILanguage(L"en-gb"), KTWUILanguage(L"en-us"));
}

}  // namespace
}  // namespace tov

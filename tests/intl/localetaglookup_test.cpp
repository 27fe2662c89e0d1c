#include "intl/localetaglookup.h"

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <random>
#include <set>

namespace tov {
namespace {

using namespace std::string_view_literals;

struct Row
{
    int nLine;
    std::wstring_view sTag;
    const wchar_t* pFound;  // null: unknown
};

void expectLookups(std::initializer_list<Row> tRows)
{
    for (const Row& tRow : tRows)
    {
        const std::optional<Locale> tLocale = LocaleTagLookup::lookup(tRow.sTag);
        EXPECT_EQ(tLocale.has_value(), tRow.pFound != nullptr) << "row at line " << tRow.nLine;
        if (tLocale && tRow.pFound)
        {
            EXPECT_EQ(tLocale->tag(), tRow.pFound) << "row at line " << tRow.nLine;
        }
    }
}

TEST(LocaleTagLookup, FindsExactTagsInAnyCaseAndSpelling)
{
    expectLookups({
        {__LINE__, L"en-US", L"en-US"},
        {__LINE__, L"en-us", L"en-US"},
        {__LINE__, L"EN_us", L"en-US"},
        {__LINE__, L"en_US.UTF-8", L"en-US"},
        {__LINE__, L"de_DE@euro", L"de-DE"},
        {__LINE__, L"de_DE.ISO-8859-15@euro", L"de-DE"},
        {__LINE__, L"en-US@calendar=japanese", L"en-US"},
        {__LINE__, L"zh-hant-tw", L"zh-Hant-TW"},
        {__LINE__, L"sr-Latn-RS", L"sr-Latn-RS"},
        {__LINE__, L"es-419", L"es-419"},
        {__LINE__, L"en-001", L"en-001"},
        {__LINE__, L"de", L"de"},
        {__LINE__, L"en-US-POSIX", L"en-US-u-va-posix"},
    });
}

TEST(LocaleTagLookup, PutsTagsIntoCanonicalFormFirst)
{
    expectLookups({
        {__LINE__, L"iw-IL", L"he-IL"},
        {__LINE__, L"in-ID", L"id-ID"},
        {__LINE__, L"ji", L"yi"},
        {__LINE__, L"tl", L"fil"},
        {__LINE__, L"mo", L"ro"},
        {__LINE__, L"sh", L"sr-Latn"},
        {__LINE__, L"de-DD", L"de-DE"},
        {__LINE__, L"cmn-Hans-CN", L"zh-Hans-CN"},
        {__LINE__, L"zh-cmn-Hans-CN", L"zh-Hans-CN"},
    });
}

TEST(LocaleTagLookup, DropsExtensionsAndVariantsThatNoLocaleHas)
{
    expectLookups({
        {__LINE__, L"en-US-u-ca-buddhist-nu-thai", L"en-US"},
        {__LINE__, L"ar-EG-u-nu-arab", L"ar-EG"},
        {__LINE__, L"en-x-private", L"en"},
        {__LINE__, L"de-DE-1996", L"de-DE"},
        {__LINE__, L"ca-ES-valencia", L"ca-ES"},
    });
}

TEST(LocaleTagLookup, FillsInLikelySubtags)
{
    expectLookups({
        {__LINE__, L"zh-TW", L"zh-Hant-TW"},
        {__LINE__, L"zh-CN", L"zh-Hans-CN"},
        {__LINE__, L"zh-HK", L"zh-Hant-HK"},
        {__LINE__, L"sr-RS", L"sr-Cyrl-RS"},
        {__LINE__, L"sr-ME", L"sr-Latn-ME"},
        {__LINE__, L"az-AZ", L"az-Latn-AZ"},
        {__LINE__, L"pa-PK", L"pa-Arab-PK"},
        {__LINE__, L"de-Latn-DE", L"de-DE"},  // the region's usual script
        {__LINE__, L"en-Latn", L"en-US"},
        {__LINE__, L"und-DE", L"de-DE"},
    });
}

TEST(LocaleTagLookup, FallsBackToLanguageAndScriptAndThenToTheLanguage)
{
    expectLookups({
        {__LINE__, L"zh-Hant-US", L"zh-Hant"},
        {__LINE__, L"sr-Latn-DE", L"sr-Latn"},
        {__LINE__, L"de-FR", L"de"},
        {__LINE__, L"de-Cyrl-DE", L"de"},  // not the region's usual script
        {__LINE__, L"en-XX", L"en"},
        {__LINE__, L"no-NO", L"no"},
    });
}

TEST(LocaleTagLookup, TakesTagsThatNameNoLanguageForUnknown)
{
    expectLookups({
        {__LINE__, L"und", nullptr},
        {__LINE__, L"UND", nullptr},
        {__LINE__, L"und-u-va-posix", nullptr},
        {__LINE__, L"und-XX", nullptr},
        {__LINE__, L"root", nullptr},
        {__LINE__, L"ROOT", nullptr},
        {__LINE__, L"root-US", nullptr},
        {__LINE__, L"C", nullptr},
        {__LINE__, L"c.UTF-8", nullptr},
        {__LINE__, L"POSIX", nullptr},
        {__LINE__, L"xx", nullptr},
        {__LINE__, L"xx-XX", nullptr},
        {__LINE__, L"qqq-DE", nullptr},
        {__LINE__, L"x-foo", nullptr},
        {__LINE__, L"i-klingon", nullptr},
    });
}

TEST(LocaleTagLookup, TakesWhatIsNoWholeTagForUnknown)
{
    const std::wstring sLong = L"en-x-" + std::wstring(200, L'a');
    const std::wstring sHuge(1'000'000, L'a');
    expectLookups({
        {__LINE__, L"", nullptr},
        {__LINE__, L".", nullptr},
        {__LINE__, L"@", nullptr},
        {__LINE__, L"-", nullptr},
        {__LINE__, L"_", nullptr},
        {__LINE__, L"en-", nullptr},
        {__LINE__, L"-en", nullptr},
        {__LINE__, L"en--US", nullptr},
        {__LINE__, L"en US", nullptr},
        {__LINE__, L" en", nullptr},
        {__LINE__, L"en-US-toolongsubtag", nullptr},
        {__LINE__, L"de-DE-DE", nullptr},
        {__LINE__, L"../../etc/passwd", nullptr},
        {__LINE__, L"en/US", nullptr},
        {__LINE__, L"en\0US"sv, nullptr},
        {__LINE__, L"\0"sv, nullptr},
        {__LINE__, L"en\0"sv, nullptr},
        {__LINE__, L"d\u00E9", nullptr},
        {__LINE__, L"\u0165n-US", nullptr},  // its low byte is an "e"
        {__LINE__, L"\uFF45\uFF4E", nullptr},
        {__LINE__, L"\U0010FFFF", nullptr},
        {__LINE__, sLong, nullptr},
        {__LINE__, sHuge, nullptr},
    });
    const wchar_t aBeyondUnicode[] = {static_cast<wchar_t>(0x7FFFFF65), L'n', 0};
    EXPECT_FALSE(LocaleTagLookup::lookup(aBeyondUnicode));
    // What is cut off may be anything.
    EXPECT_TRUE(LocaleTagLookup::lookup(L"en." + sHuge));
}

TEST(LocaleTagLookup, GivesEnglishAndSaysSoWhereTheTagIsUnknown)
{
    bool bFound = true;
    EXPECT_EQ(LocaleTagLookup::lookupOrDefault(L"xx-XX", &bFound).tag(), L"en-US");
    EXPECT_FALSE(bFound);
    EXPECT_EQ(LocaleTagLookup::lookupOrDefault(L"fr-FR", &bFound).tag(), L"fr-FR");
    EXPECT_TRUE(bFound);
    EXPECT_EQ(LocaleTagLookup::lookupOrDefault(L"root").tag(), L"en-US");
}

TEST(LocaleTagLookup, ListsEveryLocaleOfTheDataByATagThatFindsIt)
{
    std::set<String> tExpected;
    for (int n = 0; n < uloc_countAvailable(); ++n)
    {
        char aTag[ULOC_FULLNAME_CAPACITY];
        UErrorCode eStatus = U_ZERO_ERROR;
        uloc_toLanguageTag(uloc_getAvailable(n), aTag, sizeof aTag, true, &eStatus);
        ASSERT_TRUE(U_SUCCESS(eStatus));
        tExpected.emplace(aTag, aTag + std::char_traits<char>::length(aTag));
    }
    const std::vector<String> vTags = LocaleTagLookup::allTags();
    EXPECT_TRUE(std::is_sorted(vTags.begin(), vTags.end()));
    EXPECT_EQ(std::set<String>(vTags.begin(), vTags.end()), tExpected);
    EXPECT_EQ(vTags.size(), tExpected.size());
    for (const String& sTag : vTags)
    {
        const std::optional<Locale> tLocale = LocaleTagLookup::lookup(sTag);
        ASSERT_TRUE(tLocale);
        EXPECT_EQ(tLocale->tag(), sTag);
    }
}

TEST(LocaleTagLookup, FindsLocalesByTheNamesThatDatePatternsUse)
{
    const LocaleTagLookup& tLookup = LocaleTagLookup::getInstance();
    Locale tLocale;
    ASSERT_TRUE(tLookup.findLocaleByDefinitionName(L"ru-RU", tLocale));
    EXPECT_EQ(tLocale.tag(), L"ru-RU");
    EXPECT_EQ(tLocale.getName(Locale::kNominitiveMonth, 0), L"\u044F\u043D\u0432\u0430\u0440\u044C");
    ASSERT_TRUE(tLookup.findLocaleByDefinitionName(L"ru-RU;dates", tLocale));
    EXPECT_EQ(tLocale.tag(), L"ru-RU");
    EXPECT_EQ(tLocale.getName(Locale::kNominitiveMonth, 0), L"\u044F\u043D\u0432\u0430\u0440\u044F");
}

TEST(LocaleTagLookup, LeavesTheLocaleAloneWhereADefinitionNameIsUnknown)
{
    Locale tLocale = LocaleTagLookup::lookupOrDefault(L"fr-FR");
    for (const wchar_t* const pName :
         {L"", L"xx", L";dates", L"xx;dates", L"ru-RU;", L"ru-RU;Dates", L"ru-RU;dates;dates"})
    {
        EXPECT_FALSE(LocaleTagLookup::getInstance().findLocaleByDefinitionName(pName, tLocale));
        EXPECT_EQ(tLocale.tag(), L"fr-FR");
    }
}

TEST(LocaleTagLookup, SurvivesWhateverItIsGiven)
{
    constexpr std::wstring_view kParts[] = {L"en", L"zh",  L"Hant",  L"US",        L"001",      L"u",      L"x", L"t",
                                            L"ca", L"und", L"POSIX", L"abcdefghi", L"valencia", L"\u00FC", L"",  L"a"};
    std::mt19937 tRandom(20240305);
    for (int nTag = 0; nTag < 20'000; ++nTag)
    {
        std::wstring sTag;
        for (std::size_t nPart = tRandom() % 10; nPart > 0; --nPart)
            (sTag += kParts[tRandom() % std::size(kParts)]) += L"--_.@;"[tRandom() % 6];
        bool bFound = false;
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(sTag, &bFound);
        ASSERT_FALSE(tLocale.tag().empty());
        ASSERT_TRUE(bFound || tLocale.tag() == L"en-US");
    }
}

}  // namespace
}  // namespace tov

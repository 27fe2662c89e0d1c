// What a locale says depends on nothing but its tag: not on the process's default locale, not on who asks at once.

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <thread>

#include "intl/knownlocales.h"
#include "intl/localetaglookup.h"

namespace tov {
namespace {

// All texts of a record in one.
String everything(const LocaleRecord& tRecord)
{
    String sAll = tRecord.sTag + L"|" + tRecord.sEra;
    for (const String& sInfo : tRecord.tInfo)
        sAll += L"|" + sInfo;
    for (const LocaleRecord::Names& vNames : tRecord.tNames)
    {
        for (const String& sName : vNames)
            sAll += L"|" + sName;
    }
    for (const Locale::ScaleFactor& tScale : tRecord.vScales)
        sAll += L"|" + tScale.sName + L"=" + tScale.sIndicator;
    return sAll;
}

class DefaultLocale
{
public:
    explicit DefaultLocale(const char* pId) : m_sBefore(uloc_getDefault()) { set(pId); }
    ~DefaultLocale() { set(m_sBefore.c_str()); }
    DefaultLocale(const DefaultLocale&) = delete;
    DefaultLocale& operator=(const DefaultLocale&) = delete;

private:
    static void set(const char* pId)
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        uloc_setDefault(pId, &eStatus);
        EXPECT_TRUE(U_SUCCESS(eStatus));
    }

    std::string m_sBefore;
};

TEST(LocaleCache, ReadsTheSameWhateverTheDefaultLocaleOfTheProcess)
{
    const KnownLocales& tKnown = KnownLocales::instance();
    for (std::size_t n = 0; n < tKnown.size(); ++n)
    {
        const String sExpected = everything(tKnown.record(n));
        for (const char* const pDefault : {"ja_JP@calendar=japanese", "ar_EG@numbers=arab", "de_CH"})
        {
            const DefaultLocale tDefault(pDefault);
            ASSERT_EQ(everything(buildLocaleRecord(tKnown.idAt(n), MonthNames::kByThemselves)), sExpected)
                << tKnown.idAt(n) << " under " << pDefault;
        }
    }
}

TEST(LocaleCache, LooksTagsUpTheSameWhateverTheDefaultLocaleOfTheProcess)
{
    const DefaultLocale tDefault("ja_JP");
    for (const wchar_t* const pTag : {L"", L"und", L"root", L"C", L"xx", L"xx-JP", L"qaa-JP", L"und-XX"})
        EXPECT_FALSE(LocaleTagLookup::lookup(pTag)) << String(pTag).size();
    EXPECT_EQ(LocaleTagLookup::lookupOrDefault(L"xx").tag(), L"en-US");
    EXPECT_EQ(LocaleTagLookup::lookupOrDefault(L"de-XX").tag(), L"de");
    EXPECT_EQ(Locale::kUSA.mapString(Locale::kUpperCase, L"i"), L"I");
}

TEST(LocaleCache, ReadsEachLocaleOnceAndKeepsIt)
{
    const KnownLocales& tKnown = KnownLocales::instance();
    const std::size_t nGerman = tKnown.indexOf("de_DE").value();
    EXPECT_EQ(&tKnown.record(nGerman), &tKnown.record(nGerman));
    EXPECT_NE(&tKnown.record(nGerman), &tKnown.record(nGerman, MonthNames::kInsideDates));
    EXPECT_FALSE(tKnown.indexOf("de_XX"));
    EXPECT_FALSE(tKnown.indexOf(""));
    EXPECT_FALSE(tKnown.indexOf("root"));
    EXPECT_FALSE(tKnown.indexOf("zu_ZA_X"));
}

TEST(LocaleCache, GivesManyThreadsTheSameLocales)
{
    // Names for dates: records that no other test asks for, so that the threads meet at an empty cache.
    const std::vector<String> vTags = LocaleTagLookup::allTags();
    constexpr std::size_t kThreads = 4;
    std::vector<std::vector<const String*>> vSeen(kThreads);
    std::vector<std::thread> vThreads;
    for (std::vector<const String*>& vMine : vSeen)
    {
        vThreads.emplace_back(
            [&]
            {
                for (const String& sTag : vTags)
                {
                    Locale tLocale;
                    if (LocaleTagLookup::getInstance().findLocaleByDefinitionName(sTag + L";dates", tLocale))
                        vMine.push_back(&tLocale.getInfo(Locale::kDecimalSeparator));
                    Locale tUsa = Locale::kUSA;
                    tUsa.setOverridingCurrencyTag(sTag);
                }
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vSeen.front().size(), vTags.size());
    for (const std::vector<const String*>& vMine : vSeen)
        EXPECT_EQ(vMine, vSeen.front());
}

}  // namespace
}  // namespace tov

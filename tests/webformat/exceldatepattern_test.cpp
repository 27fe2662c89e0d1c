#include "project/webformat/exceldatepattern.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "intl/localetaglookup.h"
#include "project/webformat/excelpattern.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

String excelPattern(const String& sPattern, const wchar_t* pLocale = L"en-US")
{
    return excelPatternOf(sPattern, LocaleTagLookup::lookupOrDefault(pLocale), KTWUILanguage::kDefaultLanguage);
}

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    const wchar_t* pExcel;
};

void expectRows(std::initializer_list<Row> tRows)
{
    for (const Row& tRow : tRows)
        EXPECT_EQ(toUtf8(excelPattern(tRow.pPattern)), toUtf8(tRow.pExcel)) << "row at line " << tRow.nLine;
}

struct LanguageRow
{
    int nLine;
    const wchar_t* pPattern;
    bool bDate;
};

TEST(ExcelDatePattern, TellsDatesFromOtherLanguages)
{
    for (const LanguageRow& tRow : std::initializer_list<LanguageRow>{
             {__LINE__, L"", false},
             {__LINE__, L"dd.MM.yyyy", true},
             {__LINE__, L"d", true},
             {__LINE__, L"Y", true},
             {__LINE__, L"h", true},
             {__LINE__, L"t", true},
             {__LINE__, L"gg", true},
             {__LINE__, L"g", false},
             {__LINE__, L"-", false},
             {__LINE__, L"ss.000", true},
             {__LINE__, L"s.#0#", true},
             {__LINE__, L"ss.00?", false},
             {__LINE__, L"ss .00", false},
             {__LINE__, L"0 days", false},
             {__LINE__, L"#.## h", false},
             {__LINE__, L"d?", false},
             {__LINE__, L"\"0\" d", true},
             {__LINE__, L"\\0d", true},
             {__LINE__, L"[0]d", true},
             {__LINE__, L"\"0\\\"0\"d", true},
             {__LINE__, L"\"day\"", false},
             {__LINE__, L"\\d", false},
             {__LINE__, L"[d]", false},
             {__LINE__, L"d @", false},
             {__LINE__, L"d \"@\"", true},
             {__LINE__, L"[FMT:dateShort]", true},
             {__LINE__, L"[FMT:time]", false},
             {__LINE__, L"[FMT:timeHourMin(sec)] h", false},
             {__LINE__, L"[FMT:timeStampShort]", true},
             {__LINE__, L"[L:de-DE]", true},
             {__LINE__, L"[duration] h", false},
             {__LINE__, L"[MMMM] d", false},
             {__LINE__, L"[%60] d", false},
             {__LINE__, L"[Scale-name:million] d", false},
             {__LINE__, L"[red]d", false},
             {__LINE__, L"[$-F800]d", true},
             {__LINE__, L"d[TZ:EST]", true},
             {__LINE__, L"[TZ:EST]", false},
             {__LINE__, L"d\\", true},
             {__LINE__, L"d\"", true},
             {__LINE__, L"d[", true},
         })
        EXPECT_EQ(isDatePattern(tRow.pPattern), tRow.bDate) << "row at line " << tRow.nLine;
}

TEST(ExcelDatePattern, SpellsDatesAsExcelDoes)
{
    expectRows({
        {__LINE__, L"yyyy-MM-dd", L"yyyy-mm-dd"},
        {__LINE__, L"yyy-M-d", L"yyyy-m-d"},
        {__LINE__, L"yy", L"yy"},
        {__LINE__, L"dd.MM.yyyy", L"dd.mm.yyyy"},
        {__LINE__, L"DD/MM", L"dd/mm"},
        {__LINE__, L"dddd, MMMM d, yyyy", L"dddd, mmmm d, yyyy"},
        {__LINE__, L"ddd d MMM", L"ddd d mmm"},
        {__LINE__, L"dddddd MMMMM", L"dddd mmmm"},
        {__LINE__, L"[$-F800]dddd", L"dddd"},
        {__LINE__, L"yyyy[TZ:EST]", L"yyyy"},
        {__LINE__, L"[L:]yyyy", L"yyyy"},
    });
}

TEST(ExcelDatePattern, SpellsTimesAsExcelDoes)
{
    expectRows({
        {__LINE__, L"HH:mm:ss", L"hh:mm:ss"},
        {__LINE__, L"H:m:s", L"h:m:s"},
        {__LINE__, L"h:mm:ss tt", L"h:mm:ss AM/PM"},
        {__LINE__, L"hh t", L"hh AM/PM"},
        {__LINE__, L"tt hh:mm", L"AM/PM hh:mm"},
        {__LINE__, L"mm:ss", L"mm:ss"},
        {__LINE__, L"HH:mm TZ", L"hh:mm "},
        {__LINE__, L"ss.0", L"ss.0"},
        {__LINE__, L"HH:mm:ss.###", L"hh:mm:ss.000"},
        {__LINE__, L"ss.", L"ss"},
        {__LINE__, L"HH:mm:ss.#########", L"hh:mm:ss.000"},
        {__LINE__, L"ss.000000", L""},  // six digits must be shown
        {__LINE__, L"sss.0", L""},
        {__LINE__, L"M/d/yyyy h:mm:ss tt", L"m/d/yyyy h:mm:ss AM/PM"},
    });
}

TEST(ExcelDatePattern, IsEmptyWhereExcelReadsOrShowsSomethingElse)
{
    expectRows({
        {__LINE__, L"y", L""},
        {__LINE__, L"DDDD", L""},
        {__LINE__, L"ddddd", L""},
        {__LINE__, L"d gg", L""},
        {__LINE__, L"[L:de-DE]dddd", L""},
        {__LINE__, L"h:mm", L""},     // Excel would count to 24
        {__LINE__, L"HH:mm t", L""},  // Excel would count to 12
        // "m" behind an hour or before a second is a minute, elsewhere a month.
        {__LINE__, L"HH MM", L""},
        {__LINE__, L"MM ss", L""},
        {__LINE__, L"mm", L""},
        {__LINE__, L"d mm", L""},
        {__LINE__, L"d mm:ss", L"d mm:ss"},
        {__LINE__, L"HH \"h\" mm \"min\"", L"hh\" h \"mm\" min\""},
        {__LINE__, L"h t mm", L""},
        {__LINE__, L"h t mm ss", L"h AM/PM mm ss"},
        {__LINE__, L"HH:mm MM", L"hh:mm mm"},
        {__LINE__, L"HH MMM", L"hh mmm"},
    });
}

TEST(ExcelDatePattern, QuotesLiteralsWhereExcelNeedsIt)
{
    expectRows({
        {__LINE__, L"\"at\" HH", L"\"at \"hh"},
        {__LINE__, L"d. MMMM", L"d. mmmm"},
        {__LINE__, L"d \"de\" MMMM", L"d\" de \"mmmm"},
        {__LINE__, L"\"say \\\"hi\\\"\" d", L"\"say \"\\\"\"hi\"\\\"\" \"d"},
        {__LINE__, L"d;M", L"d\";\"m"},
        {__LINE__, L"d[html]<b>d</b>", L"d"},
        {__LINE__, L"ss\".\"", L"ss\".\""},  // a bare point would begin a fraction
        {__LINE__, L"ss.0\".\"", L"ss.0\".\""},
        {__LINE__, L"dTd", L"d\"T\"d"},
        {__LINE__, L"d\x01", L""},
        // Fields of one letter stay apart.
        {__LINE__, L"d\"\"dddd", L"d\"\"dddd"},
        {__LINE__, L"HH:mmMMM", L"hh:mm\"\"mmm"},
    });
}

struct LocaleRow
{
    int nLine;
    const wchar_t* pLocale;
    const wchar_t* pPattern;
    const wchar_t* pExcel;
};

TEST(ExcelDatePattern, KnowsPredefinedFormats)
{
    for (const LocaleRow& tRow : std::initializer_list<LocaleRow>{
             // Alone, a format has the Excel pattern of its definition, whatever the locale.
             {__LINE__, L"en-US", L"[FMT:dateShort]", L"m/d/yyyy"},
             {__LINE__, L"de-DE", L"[FMT:dateShort]", L"m/d/yyyy"},
             {__LINE__, L"en-US", L"[FMT:dateLong]", L"[$-F800]dddd, mmmm dd, yyyy"},
             {__LINE__, L"en-US", L"[FMT:ODBCTimeStamp]", L"yyyy-mm-dd hh:mm:ss"},
             {__LINE__, L"en-US", L"[FMT:timeStampShort]", L"m/d/yyyy h:mm:ss AM"},
             {__LINE__, L"en-US", L"[FMT:nonsense]", L"m/d/yyyy"},
             // Where it has none, and inside a longer pattern, the locale's pattern counts.
             {__LINE__, L"en-US", L"[FMT:dateInput]", L"mm/dd/yyyy"},
             {__LINE__, L"en-US", L"[FMT:timeInput]", L"h:mm:ss AM/PM"},
             {__LINE__, L"de-DE", L"[FMT:dateShort] HH:mm", L"dd.mm.yyyy hh:mm"},
             {__LINE__, L"en-US", L"\"T\" [FMT:dateShort]", L"\"T \"m/d/yyyy"},
             {__LINE__, L"ru-RU", L"[FMT:dateLong] HH", L""},  // its month is in the case used inside dates
             {__LINE__, L"en-US", L"[FMT:dateYearMonth]", L""},
             {__LINE__, L"en-US", L"[FMT:dateTyped]", L"\"date '\"yyyy-mm-dd\"'\""},
         })
        EXPECT_EQ(toUtf8(excelPattern(tRow.pPattern, tRow.pLocale)), toUtf8(tRow.pExcel))
            << "row at line " << tRow.nLine;
}

TEST(ExcelDatePattern, HasAtMost255Utf16Units)
{
    EXPECT_EQ(excelPattern(String(1000, L'd')), L"dddd");
    EXPECT_EQ(excelPattern(L"d" + String(252, L'e')), L"d\"" + String(252, L'e') + L"\"");
    EXPECT_EQ(excelPattern(L"d" + String(253, L'e')), L"");
    EXPECT_EQ(excelPattern(L"d" + String(200'000, L'e')), L"");
    String sLong;
    for (int n = 0; n < 50'000; ++n)
        sLong += L"d/";
    EXPECT_EQ(excelPattern(sLong), L"");
}

// What Excel, in English, shows of a moment under a pattern of dates, by the rules of its documentation.
class ExcelClock
{
public:
    explicit ExcelClock(String sPattern) : m_sPattern(std::move(sPattern)) {}

    String show(const DateTime& tValue)
    {
        m_sResult.clear();
        m_nLast = 0;
        for (m_nAt = 0; m_nAt < m_sPattern.size();)
            showToken(tValue);
        return m_sResult;
    }

private:
    void showToken(const DateTime& tValue)
    {
        const wchar_t nChar = m_sPattern[m_nAt];
        if (nChar == L'"')
        {
            const std::size_t nClose = m_sPattern.find(L'"', m_nAt + 1);
            m_sResult += m_sPattern.substr(m_nAt + 1, nClose - m_nAt - 1);
            m_nAt = nClose + 1;
        }
        else if (nChar == L'\\')
        {
            m_sResult += m_sPattern[m_nAt + 1];
            m_nAt += 2;
        }
        else if (m_sPattern.compare(m_nAt, 5, L"AM/PM") == 0)
        {
            m_sResult += tValue.hour() < 12 ? L"AM" : L"PM";
            m_nAt += 5;
            m_nLast = L'A';
        }
        else if (String(L"ymdhs").find(nChar) != String::npos)
            showField(tValue, nChar);
        else
        {
            m_sResult += nChar;
            ++m_nAt;
        }
    }

    void showField(const DateTime& tValue, wchar_t nLetter)
    {
        const std::size_t nEnd = std::min(m_sPattern.find_first_not_of(nLetter, m_nAt), m_sPattern.size());
        const std::size_t nRun = nEnd - m_nAt;
        m_nAt = nEnd;
        const bool bTwelve = m_sPattern.find(L"AM/PM") != String::npos;
        switch (nLetter)
        {
        case L'y': showNumber(nRun == 2 ? tValue.year() % 100 : tValue.year(), nRun); break;
        case L'd': showDay(tValue, nRun); break;
        case L'h': showNumber(bTwelve ? (tValue.hour() + 11) % 12 + 1 : tValue.hour(), nRun); break;
        case L's': showSeconds(tValue, nRun); break;
        default:
            if (nRun <= 2 && (m_nLast == L'h' || secondFollows()))
                showNumber(tValue.minute(), nRun);
            else
                showMonth(tValue, nRun);
        }
        m_nLast = nLetter;
    }

    bool secondFollows() const
    {
        String sRest;
        bool bQuoted = false;
        for (std::size_t n = m_nAt; n < m_sPattern.size(); ++n)
        {
            if (m_sPattern[n] == L'\\')
                ++n;
            else if (m_sPattern[n] == L'"')
                bQuoted = !bQuoted;
            else if (!bQuoted && String(L"ymdhsA").find(m_sPattern[n]) != String::npos)
                return m_sPattern[n] == L's';
        }
        return false;
    }

    void showMonth(const DateTime& tValue, std::size_t nRun)
    {
        static const wchar_t* const kNames[] = {L"January",   L"February", L"March",    L"April",
                                                L"May",       L"June",     L"July",     L"August",
                                                L"September", L"October",  L"November", L"December"};
        const String sName = kNames[tValue.month() - 1];
        if (nRun <= 2)
            showNumber(static_cast<int>(tValue.month()), nRun);
        else
            m_sResult += nRun == 3 ? sName.substr(0, 3) : sName;
    }

    void showDay(const DateTime& tValue, std::size_t nRun)
    {
        static const wchar_t* const kNames[] = {L"Monday", L"Tuesday",  L"Wednesday", L"Thursday",
                                                L"Friday", L"Saturday", L"Sunday"};
        // 1 January 1900 was a Monday.
        const std::chrono::sys_days tDay =
            std::chrono::year(tValue.year()) / static_cast<int>(tValue.month()) / static_cast<int>(tValue.day());
        const String sName = kNames[std::chrono::weekday(tDay).iso_encoding() - 1];
        if (nRun <= 2)
            showNumber(static_cast<int>(tValue.day()), nRun);
        else
            m_sResult += nRun == 3 ? sName.substr(0, 3) : sName;
    }

    void showSeconds(const DateTime& tValue, std::size_t nRun)
    {
        showNumber(static_cast<int>(tValue.second()), nRun);
        if (m_nAt >= m_sPattern.size() || m_sPattern[m_nAt] != L'.')
            return;
        const std::size_t nEnd = std::min(m_sPattern.find_first_not_of(L'0', m_nAt + 1), m_sPattern.size());
        const String sDigits = std::to_wstring(1'000'000'000 + tValue.nanoseconds()).substr(1, nEnd - m_nAt - 1);
        if (!sDigits.empty())
            m_sResult += L"." + sDigits;
        else
            m_sResult += L'.';
        m_nAt = nEnd;
    }

    void showNumber(int nNumber, std::size_t nRun)
    {
        const String sDigits = std::to_wstring(nNumber);
        m_sResult += String(nRun >= 2 && sDigits.size() < 2 ? 1 : 0, L'0') + sDigits;
    }

    String m_sPattern;
    String m_sResult;
    std::size_t m_nAt = 0;
    wchar_t m_nLast = 0;
};

// Whether the pattern rounds to whole seconds: "s." without digits.
bool isRounded(const String& sPattern)
{
    for (std::size_t nAt = 0; (nAt = sPattern.find(L"s.", nAt)) != String::npos; ++nAt)
    {
        if (sPattern.compare(nAt + 2, 1, L"0") != 0)
            return true;
    }
    return false;
}

TEST(ExcelDatePattern, ShowsMomentsAsTheFormatterShowsThem)
{
    static constexpr const wchar_t* kPieces[] = {
        L"yyyy", L"yy", L"yyy", L"M", L"MM", L"MMM",    L"MMMM", L"d",      L"dd",         L"ddd", L"dddd",     L"H",
        L"HH",   L"h",  L"hh",  L"m", L"mm", L"s",      L"ss",   L"ss.000", L"s.0",        L"t",   L"tt",       L"/",
        L":",    L" ",  L"-",   L".", L", ", L"\"at\"", L"T",    L"\\s",    L"\"a\\\"b\"", L"e",   L"[$-F800]", L"TZ"};
    std::mt19937 tRandom(7);
    int nCompared = 0;
    for (int n = 0; n < 20'000; ++n)
    {
        String sPattern;
        for (unsigned nPieces = tRandom() % 7 + 1; nPieces > 0; --nPieces)
            sPattern += kPieces[tRandom() % std::size(kPieces)];
        const String sExcel = isDatePattern(sPattern) ? excelPattern(sPattern) : String();
        if (sExcel.empty())
            continue;
        // Excel has nothing to round, and no time before 1900.
        DateTime tValue(1900 + static_cast<int>(tRandom() % 8000), tRandom() % 12 + 1, tRandom() % 28 + 1,
                        tRandom() % 24, tRandom() % 60, tRandom() % 60, tRandom() % 10 * 100'000'000);
        if (isRounded(sPattern))
            tValue.setNanoseconds(0);
        EXPECT_EQ(toUtf8(ExcelClock(sExcel).show(tValue)),
                  toUtf8(WebDateFormatter::ParseCustomFormat(sPattern, Locale::kUSA, KTWUILanguage::kDefaultLanguage,
                                                             ValueFormatterTypes::kText)
                             ->formatAsString(&tValue)))
            << toUtf8(sPattern) << " -> " << toUtf8(sExcel);
        ++nCompared;
    }
    EXPECT_GT(nCompared, 1'500);
}

}  // namespace

}  // namespace tov

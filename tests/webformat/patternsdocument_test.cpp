// Runs every example of docs/patterns.md.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatters.h"
#include "webformat/durationformatters.h"
#include "webformat/numericformatter.h"
#include "webformat/textformatter.h"

namespace tov {

namespace {

struct Example
{
    int nLine;
    String sPattern;
    std::string sValue;
    std::string sText;
    std::string sSetting;
};

// The cells of a table row without their blanks and backticks; a pipe stands in no cell.
std::vector<std::string> cellsOf(const std::string& sLine)
{
    std::vector<std::string> vCells;
    for (std::size_t nStart = 1, nEnd = 0; (nEnd = sLine.find('|', nStart)) != std::string::npos; nStart = nEnd + 1)
    {
        std::string sCell = sLine.substr(nStart, nEnd - nStart);
        sCell.erase(0, sCell.find_first_not_of(' '));
        sCell.erase(sCell.find_last_not_of(' ') + 1);
        if (sCell.size() >= 2 && sCell.front() == '`' && sCell.back() == '`')
            sCell = sCell.substr(1, sCell.size() - 2);
        vCells.push_back(sCell);
    }
    return vCells;
}

std::vector<Example> examples()
{
    std::ifstream tFile(WEBFORMAT_SOURCE_DIR "/docs/patterns.md");
    std::vector<Example> vExamples;
    int nLine = 0;
    for (std::string sLine; std::getline(tFile, sLine);)
    {
        ++nLine;
        if (!sLine.starts_with("| `"))
            continue;
        std::vector<std::string> vCells = cellsOf(sLine);
        vCells.resize(4);
        vExamples.push_back({nLine, *fromUtf8(vCells[0]), vCells[1], vCells[2], vCells[3]});
    }
    return vExamples;
}

// A setting is an output name or a locale's tag.
ValueFormatterTypes::OutputType outputOf(const std::string& sSetting)
{
    const std::map<std::string, ValueFormatterTypes::OutputType> kOutputs = {
        {"html", ValueFormatterTypes::kHTML},
        {"xml", ValueFormatterTypes::kXML},
        {"pdf", ValueFormatterTypes::kPDF},
        {"xlsx", ValueFormatterTypes::kXLSX},
        {"javascript", ValueFormatterTypes::kJavaScript},
        {"sqlliteral", ValueFormatterTypes::kSQLLiteral}};
    const auto tFound = kOutputs.find(sSetting);
    return tFound == kOutputs.end() ? ValueFormatterTypes::kText : tFound->second;
}

Locale localeOf(const std::string& sSetting)
{
    return LocaleTagLookup::lookupOrDefault(*fromUtf8(sSetting));
}

template <class T>
std::string format(const Example& tExample, const T* pValue)
{
    return toUtf8(NumericFormatter<T>::ParseCustomFormat(tExample.sPattern, localeOf(tExample.sSetting),
                                                         outputOf(tExample.sSetting), KTWUILanguage::kDefaultLanguage)
                      ->formatAsString(pValue));
}

double numberOf(const std::string& sValue)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::map<std::string, double> kNames = {
        {"NaN", std::numeric_limits<double>::quiet_NaN()}, {"INF", kInfinity}, {"-INF", -kInfinity}};
    const auto tFound = kNames.find(sValue);
    return tFound == kNames.end() ? std::stod(sValue) : tFound->second;
}

// "2024-03-05 07:08:09" with or without a fraction of the second; no value for anything else.
std::optional<DateTime> momentOf(const std::string& sValue)
{
    int nYear = 0;
    unsigned nMonth = 0, nDay = 0, nHour = 0, nMinute = 0, nSecond = 0;
    int nLength = 0;
    if (std::sscanf(sValue.c_str(), "%4d-%2u-%2u %2u:%2u:%2u%n", &nYear, &nMonth, &nDay, &nHour, &nMinute, &nSecond,
                    &nLength) != 6)
        return std::nullopt;
    const std::string sFraction = sValue.substr(static_cast<std::size_t>(nLength));
    const std::string sNanoseconds = sFraction.empty() ? "" : sFraction.substr(1);
    return DateTime(nYear, nMonth, nDay, nHour, nMinute, nSecond,
                    static_cast<unsigned>(std::stoul(sNanoseconds + std::string(9 - sNanoseconds.size(), '0'))));
}

std::string formatDate(const Example& tExample, const DateTime& tValue)
{
    return toUtf8(WebDateFormatter::ParseCustomFormat(tExample.sPattern, localeOf(tExample.sSetting),
                                                      KTWUILanguage::kDefaultLanguage, outputOf(tExample.sSetting))
                      ->formatAsString(&tValue));
}

template <class T>
std::string formatDuration(const Example& tExample, const T* pValue)
{
    return toUtf8(DurationFormatter<T>::ParseCustomFormat(tExample.sPattern, localeOf(tExample.sSetting),
                                                          outputOf(tExample.sSetting), KTWUILanguage::kDefaultLanguage)
                      ->formatAsString(pValue));
}

std::string textOfDuration(const Example& tExample, const std::string& sSeconds)
{
    if (sSeconds == "null")
        return formatDuration<double>(tExample, nullptr);
    if (sSeconds.starts_with("int64 "))
    {
        const long nValue = std::stol(sSeconds.substr(6));
        return formatDuration(tExample, &nValue);
    }
    const double fValue = numberOf(sSeconds);
    return formatDuration(tExample, &fValue);
}

std::string formatText(const Example& tExample, const std::string& sValue)
{
    const String sText = *fromUtf8(sValue);
    return toUtf8(WebTextFormatter::ParseCustomFormat(tExample.sPattern, Locale::kUSA, outputOf(tExample.sSetting))
                      ->formatAsString(sValue == "null" ? nullptr : sText.c_str()));
}

std::string textOf(const Example& tExample)
{
    const std::string& sValue = tExample.sValue;
    if (sValue == "text")
        return formatText(tExample, "");
    if (sValue.starts_with("text "))
        return formatText(tExample, sValue.substr(5));
    if (const std::optional<DateTime> tMoment = momentOf(sValue))
        return formatDate(tExample, *tMoment);
    if (sValue.starts_with("duration "))
        return textOfDuration(tExample, sValue.substr(9));
    if (sValue == "null")
        return format<double>(tExample, nullptr);
    if (sValue.starts_with("int64 "))
    {
        const long nValue = std::stol(sValue.substr(6));
        return format(tExample, &nValue);
    }
    if (sValue.starts_with("decimal "))
    {
        const CorvidNumber tValue = *CorvidNumber::fromString(std::string_view(sValue).substr(8));
        return format(tExample, &tValue);
    }
    const double fValue = numberOf(sValue);
    return format(tExample, &fValue);
}

TEST(PatternsDocument, EveryExampleIsTrue)
{
    const std::vector<Example> vExamples = examples();
    EXPECT_GE(vExamples.size(), 60u) << "the tables were not found";
    for (const Example& tExample : vExamples)
        EXPECT_EQ(textOf(tExample), tExample.sText) << "docs/patterns.md:" << tExample.nLine;
}

}  // namespace

}  // namespace tov

// Does each kind of work on hostile texts of two lengths, the second twice the first, and has callgrind write what each
// cost; tests/linear/linear_test.py runs it and compares. Without callgrind it only does the work.
//
// A dump is named <kind of work>|<unit of the text>|<1 or 2>.

#include <valgrind/callgrind.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "project/webformat/htmlfilter.h"
#include "webbedrock/encoding.h"
#include "webbedrock/utf8.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/dateformatters.h"
#include "webformat/durationformatters.h"
#include "webformat/numericformatter.h"
#include "webformat/textformatter.h"
#include "webformat/truncateformatter.h"

namespace {

using namespace tov;
using Types = ValueFormatterTypes;

using Work = std::function<void(const String&)>;

// Long enough that a search of the rest for each of its characters costs more than all else.
constexpr std::size_t kLength = 4000;
constexpr std::size_t kWarmUpLength = 64;

// What is repeated up to the length, and what follows it once.
struct Hostile
{
    const wchar_t* pUnit;
    const wchar_t* pTail = L"";
};

constexpr Hostile kMarkup[] = {
    {L"a"},         {L"<"},         {L"<a"},        {L"</"},          {L"</", L">"},
    {L"</a"},       {L"</a", L">"}, {L"<a>"},       {L"<a></b>"},     {L"<a></a>"},
    {L"<a b>"},     {L"<a b></a>"}, {L"<a/>"},      {L"<!"},          {L"<!", L"-->"},
    {L"<!--"},      {L"<!-- -"},    {L"<!---->"},   {L"<>"},          {L"</>"},
    {L"&"},         {L"&a"},        {L"&amp"},      {L"&amp;"},       {L"&;"},
    {L"&nbsp"},     {L"<script>"},  {L"<script><"}, {L"<script></"},  {L"<script></script "},
    {L"<script/>"}, {L"<style>/>"}, {L"-", L"-->"}, {L"<a ", L"/ >"}, {L"<script></script>"},
};

constexpr Hostile kBrackets[] = {{L"["},    {L"[b"}, {L"[/b"}, {L"[br/"},     {L"[b]"},
                                 {L"[b]["}, {L"a"},  {L"]"},   {L"[", L"b]"}, {L"[/b][br/]"}};

constexpr Hostile kValues[] = {{L"a"},          {L"<a"},        {L"<!", L"-->"}, {L"</", L">"}, {L"&"},   {L"&amp;"},
                               {L"<script></"}, {L"<a b></a>"}, {L"[b"},         {L"[b]"},      {L"[/b"}, {L"'\\"}};

constexpr Hostile kEncoded[] = {{L"a"},  {L"&"},      {L"<"},      {L"'"},          {L"\""},    {L"\\"},
                                {L"\n"}, {L"\x2028"}, {L"\xFFFE"}, {L"aaaaaaaaa<"}, {L"\xD800"}};

constexpr Hostile kTextPatterns[] = {
    {L"a"},      {L"@"},       {L"["},         {L"[a]"},          {L"\""},          {L"\"a\""},      {L"\\"},
    {L";"},      {L"@\"a\";"}, {L"&nbsp;"},    {L"&nbsp"},        {L"@T("},         {L"@T(1,"},      {L"@I("},
    {L"@I( "},   {L"@I(1,1)"}, {L"@H"},        {L"@J;"},          {L"[html]"},      {L"[html"},      {L"[html]@[text]"},
    {L"\"\\\""}, {L"[\"]"},    {L"@T(", L")"}, {L"@T(5 ", L",)"}, {L"@T(5,", L")"}, {L"@I(;", L")"}, {L"@I ", L"()"},
};

constexpr Hostile kNumberPatterns[] = {
    {L"#"},     {L"0"},  {L"."}, {L"#,"},     {L"%"},    {L"$"},     {L"[$:"},   {L"[$:a]"},     {L"["},       {L"\""},
    {L"\"a\""}, {L"\\"}, {L"x"}, {L"[red];"}, {L"[%1]"}, {L"[MMM]"}, {L"[FMT:"}, {L"[duration"}, {L"[html]0"},
};

constexpr Hostile kCalendarPatterns[] = {
    {L"y"},     {L"M"},     {L"h"},       {L"dd\"d\":"}, {L"["},     {L"[L:de-DE]"}, {L"[L:"}, {L"s.0"},
    {L"am/pm"}, {L"[opt:"}, {L"[opt:d]"}, {L"\""},       {L"\"a\""}, {L"\\"},        {L"x"},   {L"[duration(sec)]"},
};

String textOf(const Hostile& tHostile, std::size_t nLength)
{
    String sText;
    while (sText.size() < nLength)
        sText += tHostile.pUnit;
    sText.resize(nLength);
    return sText + tHostile.pTail;
}

std::string nameOf(const Hostile& tHostile)
{
    const String sName = String(tHostile.pUnit) + L".." + tHostile.pTail;
    return toUtf8(encodeAsString(W2WEncodingJavaLiteral(), sName.data(), sName.size()));
}

// What is made once, on first use, is made by a text of its own.
void measure(const char* pKind, const Hostile& tHostile, const Work& tWork)
{
    tWork(textOf(tHostile, kWarmUpLength));
    for (const unsigned nTimes : {1U, 2U})
    {
        const String sText = textOf(tHostile, nTimes * kLength);
        CALLGRIND_TOGGLE_COLLECT;
        tWork(sText);
        CALLGRIND_TOGGLE_COLLECT;
        const std::string sName = std::string(pKind) + "|" + nameOf(tHostile) + "|" + std::to_string(nTimes);
        CALLGRIND_DUMP_STATS_AT(sName.c_str());
    }
}

template <class Texts>
void measureAll(const char* pKind, const Texts& aTexts, const Work& tWork)
{
    for (const Hostile& tHostile : aTexts)
        measure(pKind, tHostile, tWork);
}

constexpr Types::OutputType kOutputs[] = {Types::kText, Types::kHTML, Types::kXML,        Types::kJavaScript,
                                          Types::kPDF,  Types::kSQL,  Types::kSQLLiteral, Types::kXLSX};

// The rule that the driver must find wanting: a search to the end for each of the characters.
void searchAgainAndAgain(const String& sText)
{
    StringBufferTemplate<wchar_t, 1> tBuffer;
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
        tBuffer.append(sText.find(L'>', nAt) == String::npos ? L'n' : L'y');
}

void removeHtml(const String& sText)
{
    StringBufferTemplate<wchar_t, 1> tBuffer;
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, sText.c_str());
}

// Half of the text, all of it with the expander, and all of it as short.
void cutMarkup(const String& sText)
{
    for (const unsigned long nLimit : {sText.size() / 2, sText.size(), sText.size() + 1})
    {
        StringBufferTemplate<wchar_t, 1> tBuffer;
        TruncateFormatter(nLimit, Types::kText).formatValue(tBuffer, sText.c_str());
        TruncateFormatter(nLimit, Types::kHTML).formatValue(tBuffer, sText.c_str());
    }
}

void convertBracketTags(const String& sText)
{
    String sCopy = sText;
    WebTextFormatter::ConvertAnswersTagsToHTMLTags(sCopy);
    StringBufferTemplate<wchar_t, 1> tBuffer;
    BracketTagReader tReader(sText);
    for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())
        tBuffer.append(sRun);
}

void encode(const String& sText)
{
    for (const Types::OutputType eOutput : kOutputs)
    {
        StringBufferTemplate<wchar_t, 1> tBuffer;
        Types::encodeToBufferOfType(tBuffer, eOutput, sText.data(), sText.size());
    }
}

// The pattern is what grows; the value is short.
void parseTextPattern(const String& sPattern)
{
    for (const Types::OutputType eOutput : kOutputs)
        WebTextFormatter::ParseCustomFormat(sPattern, Locale::kUSA, eOutput)->formatAsString(L"<a>[b]'");
}

// An [html] section of a document, in which a semicolon starts the next part.
void parseDocumentPattern(const String& sPattern)
{
    WebTextFormatter::ParseCustomFormat(L"[html]" + sPattern, Locale::kUSA, Types::kPDF)->formatAsString(L"<a>[b]'");
}

void convertTextFormat(const String& sFormat)
{
    WebConvertWhistlerFormat::ConvertTextFormat(WebWhistlerFormatDefinition(sFormat));
}

void parseNumberPattern(const String& sPattern)
{
    constexpr double kValue = -1234.5;
    NumericFormatter<double>::ParseCustomFormat(sPattern, Locale::kUSA, Types::kHTML, KTWUILanguage::kDefaultLanguage)
        ->formatAsString(&kValue);
}

void parseDatePattern(const String& sPattern)
{
    const DateTime tValue(2024, 5, 6, 7, 8, 9);
    WebDateFormatter::ParseCustomFormat(sPattern, Locale::kUSA, KTWUILanguage::kDefaultLanguage, Types::kHTML)
        ->formatAsString(&tValue);
}

void parseDurationPattern(const String& sPattern)
{
    constexpr double kValue = 5401;
    DurationFormatter<double>::ParseCustomFormat(sPattern, Locale::kUSA, Types::kHTML, KTWUILanguage::kDefaultLanguage)
        ->formatAsString(&kValue);
}

// The value is what grows, through each kind of reference in every output.
void formatText(const String& sValue)
{
    for (const wchar_t* pPattern : {L"@", L"@H", L"@N", L"@J", L"@I(1,1)", L"@T(100)"})
    {
        for (const Types::OutputType eOutput : kOutputs)
            WebTextFormatter::ParseCustomFormat(pPattern, Locale::kUSA, eOutput)->formatAsString(sValue.c_str());
    }
}

void formatSQLLiteral(const String& sValue)
{
    for (const Types::OutputType eOutput : kOutputs)
        TextSQLLiteralFormatter(eOutput).formatAsString(sValue.c_str());
}

}  // namespace

int main()
{
    measure("control", {L"<"}, &searchAgainAndAgain);
    measureAll("HTML removal", kMarkup, &removeHtml);
    measureAll("truncation", kMarkup, &cutMarkup);
    measureAll("bracket tags", kBrackets, &convertBracketTags);
    measureAll("encoders", kEncoded, &encode);
    measureAll("text pattern", kTextPatterns, &parseTextPattern);
    measureAll("text pattern of a document", kTextPatterns, &parseDocumentPattern);
    measureAll("text values", kValues, &formatText);
    measureAll("SQL literals", kEncoded, &formatSQLLiteral);
    measureAll("older text format", kTextPatterns, &convertTextFormat);
    measureAll("number pattern", kNumberPatterns, &parseNumberPattern);
    measureAll("date pattern", kCalendarPatterns, &parseDatePattern);
    measureAll("duration pattern", kCalendarPatterns, &parseDurationPattern);
    std::puts("done");
    return 0;
}

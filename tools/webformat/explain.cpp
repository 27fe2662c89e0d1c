#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "commands.h"
#include "eastasianwidth.h"
#include "explanation.h"
#include "names.h"
#include "outputfile.h"

namespace tov {

namespace {

struct ExplainOptions
{
    std::string sKind;
    std::string sPattern;
    std::string sLocale = "en-US";
    std::string sLanguage = "en-us";
};

String padded(const String& sText, std::size_t nWidth)
{
    const std::size_t nTextWidth = displayWidth(sText);
    return sText + String(nWidth > nTextWidth ? nWidth - nTextWidth : 0, L' ');
}

// A control character in a pattern must not end the line or move the columns: its picture stands for it.
String onOneLine(String sText)
{
    for (wchar_t& nCharacter : sText)
        if (nCharacter < L' ')
            nCharacter = static_cast<wchar_t>(0x2400 + nCharacter);
    return sText;
}

void writeLines(std::vector<ExplanationLine> vLines)
{
    constexpr std::size_t knWidestColumn = 80;
    std::size_t nPattern = 0;
    std::size_t nWords = 0;
    for (ExplanationLine& tLine : vLines)
    {
        tLine = {onOneLine(tLine.sPattern), onOneLine(tLine.sWords), onOneLine(tLine.sExample)};
        nPattern = std::max(nPattern, std::min(displayWidth(tLine.sPattern), knWidestColumn));
        nWords = std::max(nWords, std::min(displayWidth(tLine.sWords), knWidestColumn));
    }
    OutputFile tOutput("");
    for (const ExplanationLine& tLine : vLines)
        tOutput.write(padded(tLine.sPattern, nPattern) + L"  " + padded(tLine.sWords, nWords) + L"  " + tLine.sExample +
                      L"\n");
    tOutput.commit();
}

void runExplain(const ExplainOptions& tOptions)
{
    const String sPattern = wideArgument(tOptions.sPattern, "PATTERN");
    const Locale tLocale =
        ofArgument("--locale", [&] { return localeFromTag(wideArgument(tOptions.sLocale, "--locale")); });
    const KTWUILanguage tLanguage(wideArgument(tOptions.sLanguage, "--language"));
    const auto pExplain = tOptions.sKind == "date"       ? &explainDatePattern
                          : tOptions.sKind == "duration" ? &explainDurationPattern
                          : tOptions.sKind == "text"     ? &explainTextPattern
                                                         : &explainNumericPattern;
    writeLines(pExplain(sPattern, tLocale, tLanguage));
}

}  // namespace

void addExplainCommand(CLI::App& tApp, CommandAction& tAction)
{
    CLI::App* pCommand = tApp.add_subcommand(
        "explain", "Says what a pattern does: a line for each item with an example value shown up to there");
    const auto pOptions = std::make_shared<ExplainOptions>();
    pCommand->add_option("--kind", pOptions->sKind, "The pattern language")
        ->required()
        ->check(CLI::IsMember({"numeric", "date", "duration", "text"}));
    pCommand->add_option("PATTERN", pOptions->sPattern, "The pattern")->required();
    pCommand->add_option("--locale", pOptions->sLocale, "Locale (see: webformat list locales)")->capture_default_str();
    pCommand->add_option("--language", pOptions->sLanguage, "Language of the user interface")->capture_default_str();
    pCommand->callback([pOptions, &tAction] { tAction = [pOptions] { runExplain(*pOptions); }; });
}

}  // namespace tov

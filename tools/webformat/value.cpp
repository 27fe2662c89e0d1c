#include <CLI/CLI.hpp>
#include <memory>

#include "commands.h"
#include "jsonvalues.h"
#include "names.h"
#include "outputfile.h"
#include "reportdefinition.h"
#include "threadcollector.h"
#include "webformat/valueformatter.h"
#include "zonesettings.h"

namespace tov {

namespace {

struct ValueOptions
{
    std::string sType;
    std::string sStorage;
    std::string sPattern;
    std::string sDefinition;
    std::string sLocale = "en-US";
    std::string sLanguage = "en-us";
    std::string sOutput = "text";
    std::string sDataOffset;
    std::string sTimeZone;
    std::vector<std::string> vValues;
    CLI::Option* pPattern = nullptr;
    CLI::Option* pDefinition = nullptr;
};

SQLDataType typeOf(const ValueOptions& tOptions)
{
    const SQLDataType tType = ofArgument("--type", [&] { return typeFromNames(tOptions.sType, {}); });
    if (tOptions.sStorage.empty())
        return columnType(tType);
    return ofArgument("--storage", [&] { return typeFromNames(tOptions.sType, tOptions.sStorage); });
}

ZoneSettings zonesOf(const ValueOptions& tOptions)
{
    ZoneSettings tSettings;
    tSettings.nDataOffset = dataOffsetFromText(wideArgument(tOptions.sDataOffset, "--data-offset"));
    if (!tSettings.nDataOffset && !tOptions.sDataOffset.empty())
        throw InputError("--data-offset: found " + quotedForMessage(tOptions.sDataOffset) + ", expected " +
                         kpExpectedDataOffset);
    tSettings.sDisplayTimeZone = wideArgument(tOptions.sTimeZone, "--time-zone");
    if (!tOptions.sTimeZone.empty() && !isZoneOrDefault(tSettings.sDisplayTimeZone))
        throw InputError("--time-zone: found " + quotedForMessage(tOptions.sTimeZone) + ", expected " + kpExpectedZone);
    return tSettings;
}

WebValueFormatterHandle makeFormatter(const ValueOptions& tOptions, const SQLDataType& tType)
{
    const Locale tLocale =
        ofArgument("--locale", [&] { return localeFromTag(wideArgument(tOptions.sLocale, "--locale")); });
    const KTWUILanguage tLanguage(wideArgument(tOptions.sLanguage, "--language"));
    const ValueFormatterTypes::OutputType eOutput =
        ofArgument("--output", [&] { return outputFromName(tOptions.sOutput); });
    const ZoneSettings tZones = zonesOf(tOptions);
    const TimeZoneResolver tResolver = resolverOf(tZones, tLanguage);
    WebValueFormatDefinitionHandle hDefinition;
    if (tOptions.pDefinition->count() != 0)
        hDefinition = readStrictDefinition(tOptions.sDefinition, tLocale, "--definition");
    // A null handle says that nothing applies: the assertion behind it is no news to who typed the command.
    ThreadCollector::install();
    const ThreadCollector tQuiet;
    if (tOptions.pPattern->count() != 0)
        return WebValueFormatter::GetCustomFormatterTZ(tType, wideArgument(tOptions.sPattern, "--pattern"), tLocale,
                                                       tResolver, eOutput, tLanguage, tZones.sDisplayTimeZone);
    return WebValueFormatter::GetFormatter(tType, hDefinition, tLocale, tResolver, eOutput, 0, 0, tLanguage,
                                           tZones.sDisplayTimeZone);
}

TypedValue valueAt(const ValueOptions& tOptions, const SQLDataType& tType, std::size_t nAt)
{
    try
    {
        return valueFromText(tType, tOptions.vValues[nAt]);
    }
    catch (const InputError& tError)
    {
        throw InputError("value " + std::to_string(nAt + 1) + ": " + tError.what());
    }
}

void runValue(const ValueOptions& tOptions)
{
    const SQLDataType tType = typeOf(tOptions);
    const WebValueFormatterHandle hFormatter = makeFormatter(tOptions, tType);
    if (hFormatter.isNull() || hFormatter->valueStorageType() != tType.storageType())
        throw InputError("no formatter applies to values of the type " + quotedForMessage(tType.name()) +
                         " with the storage " + quotedForMessage(storageName(tType.storageType())) +
                         " and this format");
    std::vector<TypedValue> vValues;
    for (std::size_t nAt = 0; nAt < tOptions.vValues.size(); ++nAt)
        vValues.push_back(valueAt(tOptions, tType, nAt));
    OutputFile tOutput("");
    for (const TypedValue& tValue : vValues)
        tOutput.write(hFormatter->formatAsString(tValue.pointer()) + L"\n");
    tOutput.commit();
}

}  // namespace

void addValueCommand(CLI::App& tApp, CommandAction& tAction)
{
    CLI::App* pCommand = tApp.add_subcommand("value", "Formats values, a line each");
    const auto pOptions = std::make_shared<ValueOptions>();
    pCommand->add_option("--type", pOptions->sType, "SQL data type (see: webformat list types)")->required();
    pCommand->add_option("--storage", pOptions->sStorage, "How values are held, if not as their type is");
    pOptions->pPattern =
        pCommand->add_option("--pattern", pOptions->sPattern, "Pattern of the type's pattern language");
    pOptions->pDefinition =
        pCommand->add_option("--definition", pOptions->sDefinition, "The XML of one data-format element")
            ->excludes(pOptions->pPattern);
    pCommand->add_option("--locale", pOptions->sLocale, "Locale (see: webformat list locales)")->capture_default_str();
    pCommand->add_option("--language", pOptions->sLanguage, "Language of the user interface")->capture_default_str();
    pCommand->add_option("--output", pOptions->sOutput, "Output type (see: webformat list outputs)")
        ->capture_default_str();
    pCommand
        ->add_option(
            "--data-offset", pOptions->sDataOffset,
            "Minutes east of UTC with which timestamps are stored, or \"unknown\"; UTC unless given or configured")
        ->type_name("MINUTES");
    pCommand->add_option("--time-zone", pOptions->sTimeZone,
                         "Zone to show timestamps in (see: webformat list time-zones)");
    pCommand->add_option("VALUE", pOptions->vValues, "The values; negative ones are no options")->required();
    pCommand->callback([pOptions, &tAction] { tAction = [pOptions] { runValue(*pOptions); }; });
}

}  // namespace tov

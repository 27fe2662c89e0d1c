#include <CLI/CLI.hpp>
#include <memory>

#include "commands.h"
#include "corefacade/timezoneregistry.h"
#include "intl/currencylookup.h"
#include "intl/localetaglookup.h"
#include "names.h"
#include "outputfile.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

std::vector<String> wideNamesOf(const std::string& sKind)
{
    if (sKind == "locales")
        return LocaleTagLookup::allTags();
    if (sKind == "currencies")
        return CurrencyLookup::getInstance().currencyCodes();
    return TimeZoneRegistry::getInstance().allIds();
}

std::vector<std::string> namesOf(const std::string& sKind)
{
    if (sKind == "types")
        return typeNames();
    if (sKind == "outputs")
        return outputNames();
    std::vector<std::string> vNames;
    for (const String& sName : wideNamesOf(sKind))
        vNames.push_back(toUtf8(sName));
    return vNames;
}

void runList(const std::string& sKind)
{
    OutputFile tOutput("");
    for (const std::string& sName : namesOf(sKind))
        tOutput.write(sName + "\n");
    tOutput.commit();
}

}  // namespace

void addListCommand(CLI::App& tApp, CommandAction& tAction)
{
    CLI::App* pCommand = tApp.add_subcommand("list", "Prints the names that the other sub-commands take, a line each");
    const auto pKind = std::make_shared<std::string>();
    pCommand->add_option("KIND", *pKind, "Which names")
        ->required()
        ->check(CLI::IsMember({"types", "locales", "currencies", "time-zones", "outputs"}));
    pCommand->callback([pKind, &tAction] { tAction = [pKind] { runList(*pKind); }; });
}

}  // namespace tov

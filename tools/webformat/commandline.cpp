#include "commandline.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>

#include "commands.h"
#include "inputerror.h"
#include "utilities/configreader.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

enum ExitStatus
{
    kDone = 0,
    kWrongInput = 1,
    kWrongUsage = 2
};

void loadConfiguration(const std::string& sPath)
{
    XmlError tError;
    std::shared_ptr<ConfigReader> pReader = ConfigReader::fromFile(sPath, &tError);
    if (!pReader)
        throw InputError({sPath, static_cast<std::size_t>(tError.nLine), static_cast<std::size_t>(tError.nColumn)},
                         toUtf8(tError.sMessage));
    ConfigReader::setGlobalInstance(std::move(pReader));
}

// The sub-commands' names, "a, b, c".
std::string commandNames(const CLI::App& tApp)
{
    std::string sResult;
    for (const CLI::App* pCommand : tApp.get_subcommands([](const CLI::App*) { return true; }))
        sResult += (sResult.empty() ? "" : ", ") + pCommand->get_name();
    return sResult;
}

// A word in the place of a sub-command is named: that one is missing is only half of what is wrong.
std::string failureText(const CLI::App* pApp, const CLI::Error& tError)
{
    const std::vector<std::string> vRest = pApp->remaining();
    if (vRest.empty() || !pApp->get_subcommands().empty())
        return CLI::FailureMessage::simple(pApp, tError);
    return "webformat: found " + quotedForMessage(vRest.front()) + ", expected one of " + commandNames(*pApp) +
           "\nRun with --help for more information.\n";
}

void describe(CLI::App& tApp, std::string& sConfig)
{
    tApp.description(
        "Shows values as a report does: numbers, text and images in the form that a data format gives them.");
    tApp.name("webformat");
    tApp.set_version_flag("--version", "webformat " WEBFORMAT_VERSION);
    tApp.add_option("--config", sConfig, "Host configuration (significant digits, time zones)")->type_name("FILE.xml");
    tApp.require_subcommand(1);
    tApp.failure_message(&failureText);
    // An option that a sub-command does not know belongs to the command: --config may stand anywhere.
    tApp.fallthrough();
}

// Reads the arguments; the exit status where there is nothing left to do.
int parse(CLI::App& tApp, const std::vector<std::string>& vArguments)
{
    std::vector<std::string> vReversed = withSeparatedValues(vArguments);
    std::reverse(vReversed.begin(), vReversed.end());
    try
    {
        tApp.parse(std::move(vReversed));
    }
    catch (const CLI::ParseError& tError)
    {
        return tApp.exit(tError) == 0 ? kDone : kWrongUsage;
    }
    return -1;
}

bool isMinusValue(const std::string& sArgument)
{
    if (sArgument.size() < 2 || sArgument[0] != '-')
        return false;
    const bool bOption = sArgument[1] == '-' || std::isalpha(static_cast<unsigned char>(sArgument[1]));
    return !bOption || sArgument == "-INF";
}

bool takesValue(const std::string& sOption)
{
    // All options have a value but these; "--name=value" and "-ovalue" bring their own.
    const bool bAttached = sOption[1] == '-' ? sOption.find('=') != std::string::npos : sOption.size() > 2;
    return !bAttached && sOption != "--help" && sOption != "-h" && sOption != "--version";
}

}  // namespace

std::vector<std::string> withSeparatedValues(const std::vector<std::string>& vArguments)
{
    std::vector<std::string> vOptions;
    std::vector<std::string> vValues;
    bool bCommandSeen = false;
    for (std::size_t nAt = 0; nAt < vArguments.size(); ++nAt)
    {
        const std::string& sArgument = vArguments[nAt];
        if (sArgument == "--")
        {
            vValues.insert(vValues.end(), vArguments.begin() + static_cast<std::ptrdiff_t>(nAt) + 1, vArguments.end());
            break;
        }
        const bool bOption = sArgument.size() > 1 && sArgument[0] == '-' && !isMinusValue(sArgument);
        // The first plain argument is the sub-command, the others are its values.
        std::vector<std::string>& vTarget = bOption || !bCommandSeen ? vOptions : vValues;
        bCommandSeen = bCommandSeen || !bOption;
        vTarget.push_back(sArgument);
        if (bOption && takesValue(sArgument) && nAt + 1 < vArguments.size())
            vOptions.push_back(vArguments[++nAt]);
    }
    if (!vValues.empty())
        vOptions.emplace_back("--");
    vOptions.insert(vOptions.end(), vValues.begin(), vValues.end());
    return vOptions;
}

int runCommandLine(const std::vector<std::string>& vArguments)
{
    CLI::App tApp;
    std::string sConfig;
    CommandAction tAction;
    describe(tApp, sConfig);
    addReportCommand(tApp, tAction);
    addValueCommand(tApp, tAction);
    addExplainCommand(tApp, tAction);
    addBatchCommand(tApp, tAction);
    addListCommand(tApp, tAction);
    if (const int nStatus = parse(tApp, vArguments); nStatus >= 0)
        return nStatus;
    try
    {
        if (!sConfig.empty())
            loadConfiguration(sConfig);
        tAction();
        return kDone;
    }
    catch (const std::exception& tError)
    {
        std::fprintf(stderr, "webformat: %s\n", tError.what());
        return kWrongInput;
    }
}

}  // namespace tov

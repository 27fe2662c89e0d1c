#include "names.h"

#include <array>

#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::array<const char*, ValueFormatterTypes::kLastType> kaOutputs = {
    "text", "html", "xml", "javascript", "pdf", "sql", "sqlliteral", "xlsx"};

constexpr std::array<const char*, SQLDataType::kStorageTypeEnd_> kaStorages = {
    "invalid", "double", "timestamp", "wchar", "int32", "uint32", "int64", "uint64", "rawvalue", "corvidnumber"};

[[noreturn]] void failUnknown(const char* pWhat, std::string_view sName, const std::string& sExpected)
{
    throw InputError("found the " + std::string(pWhat) + " " + quotedForMessage(sName) + ", expected " + sExpected);
}

template <class Names>
std::string oneOf(const Names& vNames)
{
    std::string sResult = "one of ";
    for (const auto& tName : vNames)
        sResult += (&tName == &*std::begin(vNames) ? "" : ", ") + std::string(tName);
    return sResult;
}

}  // namespace

ValueFormatterTypes::OutputType outputFromName(std::string_view sName)
{
    for (std::size_t nOutput = 0; nOutput < kaOutputs.size(); ++nOutput)
        if (sName == kaOutputs[nOutput])
            return static_cast<ValueFormatterTypes::OutputType>(nOutput);
    failUnknown("output", sName, oneOf(kaOutputs));
}

const char* outputName(ValueFormatterTypes::OutputType eOutput)
{
    return eOutput >= 0 && eOutput < ValueFormatterTypes::kLastType ? kaOutputs[eOutput] : "";
}

std::vector<std::string> outputNames()
{
    return {kaOutputs.begin(), kaOutputs.end()};
}

std::vector<std::string> typeNames()
{
    std::vector<std::string> vNames;
    for (int nType = 0; nType < SQLDataType::kDataTypeEnd_; ++nType)
        vNames.emplace_back(SQLDataType(static_cast<SQLDataType::DataType>(nType)).name());
    return vNames;
}

SQLDataType typeFromNames(std::string_view sType, std::string_view sStorage)
{
    const std::optional<SQLDataType> tType = SQLDataType::fromName(sType);
    if (!tType)
        failUnknown("type", sType, oneOf(typeNames()));
    if (sStorage.empty())
        return *tType;
    const std::optional<SQLDataType::StorageType> eStorage = SQLDataType::storageTypeFromName(sStorage);
    if (!eStorage)
        failUnknown("storage", sStorage, oneOf(std::vector<std::string>(kaStorages.begin() + 1, kaStorages.end())));
    return SQLDataType(tType->dataType(), *eStorage);
}

const char* storageName(SQLDataType::StorageType eStorage)
{
    return eStorage >= 0 && eStorage < SQLDataType::kStorageTypeEnd_ ? kaStorages[eStorage] : "";
}

Locale localeFromTag(const String& sTag)
{
    const std::optional<Locale> tLocale = LocaleTagLookup::lookup(sTag);
    if (!tLocale)
        failUnknown("locale", toUtf8(sTag), "a known one such as en-US (see: webformat list locales)");
    return *tLocale;
}

String wideArgument(std::string_view sUtf8, const char* pWhat)
{
    std::optional<String> sResult = fromUtf8(sUtf8);
    if (!sResult)
        throw InputError("found bytes that are not UTF-8 in " + std::string(pWhat) + ", expected text");
    return std::move(*sResult);
}

}  // namespace tov

#include "xml/xmldocument.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "webbedrock/utf8.h"
#include "xml/schemas.h"
#include "xml/xmlparser.h"
#include "xml/xmlscanner.h"

namespace tov {

namespace {

struct FileCloser
{
    void operator()(std::FILE* pFile) const { std::fclose(pFile); }
};

String fileErrorText(int nError)
{
    return L"cannot read the file: " +
           fromUtf8(std::error_code(nError, std::generic_category()).message()).value_or(L"unknown error");
}

// The file's bytes, at most `nMost`; no value and the text of the error where it cannot be read.
std::optional<std::string> readFile(const std::string& sPath, std::size_t nMost, String& sError)
{
    const std::unique_ptr<std::FILE, FileCloser> pFile(std::fopen(sPath.c_str(), "rb"));
    if (!pFile)
    {
        sError = fileErrorText(errno);
        return std::nullopt;
    }
    std::string sBytes(nMost, '\0');
    sBytes.resize(std::fread(sBytes.data(), 1, nMost, pFile.get()));
    if (std::ferror(pFile.get()))
    {
        sError = fileErrorText(errno);
        return std::nullopt;
    }
    return sBytes;
}

}  // namespace

const XmlParseOptions& XmlParseOptions::reportFragment()
{
    static const XmlParseOptions s_tOptions = {
        {{schemas::Report::kTovPrefixName, schemas::Report::kTovNamespace},
         {schemas::Expression::kTovxPrefixName, schemas::Expression::kTovxNamespace},
         {schemas::Instance::kXsiPrefixName, schemas::Instance::kXsiNamespace}}};
    return s_tOptions;
}

std::optional<XmlDocument> XmlDocument::parse(std::string_view sUtf8Bytes, XmlError* pError,
                                              const ParseOptions& tOptions)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (sUtf8Bytes.starts_with(kByteOrderMark))
        sUtf8Bytes.remove_prefix(kByteOrderMark.size());
    XmlError tIgnored;
    XmlError& tError = pError ? *pError : tIgnored;
    XmlScan tScan;
    if (!scanXml(sUtf8Bytes, tScan, tError))
        return std::nullopt;
    std::unique_ptr<XmlElement> pRoot = parseScannedXml(sUtf8Bytes, tScan, tOptions, tError);
    if (!pRoot)
        return std::nullopt;
    return XmlDocument(std::move(pRoot));
}

std::optional<XmlDocument> XmlDocument::parseFile(const std::string& sPath, XmlError* pError,
                                                  const ParseOptions& tOptions)
{
    String sError;
    const std::optional<std::string> tBytes = readFile(sPath, knMaxBytes + 1, sError);
    if (!tBytes)
    {
        if (pError)
            *pError = {std::move(sError), 0, 0};
        return std::nullopt;
    }
    return parse(*tBytes, pError, tOptions);
}

}  // namespace tov

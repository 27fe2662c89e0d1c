#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "xml/domhelper.h"
#include "xml/xmldocument.h"

namespace {

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

void checkDepthAndAttributes(const tov::XmlElement& tElement, int nDepth)
{
    require(nDepth <= tov::XmlDocument::knMaxDepth);
    require(tElement.attributes().size() <= tov::XmlDocument::knMaxAttributes);
    require(tElement.lineNumber() >= 1 && tElement.columnNumber() >= 1);
    // The reader has checked the prefix, so that the default is never the answer where the attribute is there.
    const bool bTyped = tElement.getAttribute(L"http://www.w3.org/2001/XMLSchema-instance", L"type") != nullptr;
    require((tov::DOMHelper::getXsiType(tElement, L"\1") == L"\1") == !bTyped);
    for (const tov::XmlElement& tChild : tElement.children())
        checkDepthAndAttributes(tChild, nDepth + 1);
}

// What is accepted keeps the limits, and what is written of it reads back as it was and is written the same again.
void check(std::string_view sBytes, const tov::XmlParseOptions& tOptions)
{
    tov::XmlError tError;
    const std::optional<tov::XmlDocument> tDocument = tov::XmlDocument::parse(sBytes, &tError, tOptions);
    if (!tDocument)
    {
        require(!tError.sMessage.empty() && tError.nLine >= 1 && tError.nColumn >= 1);
        return;
    }
    checkDepthAndAttributes(tDocument->root(), 1);
    const std::string sWritten = tov::XmlDocument::serialize(tDocument->root());
    if (sWritten.size() > tov::XmlDocument::knMaxBytes)
        return;
    const std::optional<tov::XmlDocument> tAgain = tov::XmlDocument::parse(sWritten, &tError);
    require(tAgain.has_value());
    require(tov::XmlElement::sameContent(tDocument->root(), tAgain->root()));
    require(tov::XmlDocument::serialize(tAgain->root()) == sWritten);
    const tov::XmlElement tCopy = tDocument->root();
    require(tov::XmlElement::sameContent(tCopy, tDocument->root()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nBytes)
{
    const std::string_view sBytes(reinterpret_cast<const char*>(pBytes), nBytes);
    check(sBytes, {});
    check(sBytes, tov::XmlParseOptions::reportFragment());
    return 0;
}

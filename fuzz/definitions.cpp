// Definitions: what reads as one is written, read again and found equal, and every operation on it comes to an end.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "webbedrock/assertion.h"
#include "webbedrock/outputstream.h"
#include "webformat/dateformatters.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"

namespace {

using namespace tov;

using Definition = Handle<WebValueFormatDefinition, WebValueFormatDefinition>;

// Only what a document may leave out is asserted.
void stopAtOtherAssertions(const char* pExpression, const char*, int)
{
    const std::string_view sExpression = pExpression;
    if (sExpression != "pCurrColumnFormat" && sExpression != "!sPredefinedFormat.empty()")
        std::abort();
}

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

std::string bytesOf(const Definition& hDefinition)
{
    MemoryOutputStream tStream;
    hDefinition->writeToStream(tStream);
    return tStream.bytes();
}

Definition throughXml(const Definition& hDefinition)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    WebValueFormatDefinition::setDataFormatElement(tColumn, hDefinition);
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(XmlDocument::serialize(tColumn));
    if (!tDocument)
        return Definition();  // longer than documents may be
    const XmlElement* const pElement = tDocument->root().findChild(schemas::Report::kqnDataFormat);
    require(pElement != nullptr);
    return WebValueFormatDefinition::DynamicReadXML(*pElement);
}

// An Excel pattern is short, or one of settings whose runs of digits stop at 255; a style's string ends at its end.
void requireExcelForms(const Definition& hDefinition, const Locale& tLocale)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    const String sExcel =
        hDefinition->getFormatPattern(tLocale, tLanguage, WebValueFormatDefinition::kFormatPatternExcel);
    require(sExcel.size() < 4 * 255 + 64);
    const String sNormal =
        hDefinition->getFormatPattern(tLocale, tLanguage, WebValueFormatDefinition::kFormatPatternNormal);
    if (hDefinition->GetDefType() == WebValueFormatDefinition::kCustomFormat)
        require(sNormal.find_first_of(L"<>\"'\n") == String::npos);
    static_cast<void>(hDefinition->getMsoStyle(tLocale, tLanguage));
}

void requireSameAgain(const Definition& hDefinition)
{
    const Definition hClone = hDefinition->clone();
    require(WebValueFormatDefinition::CompareDefinitions(hDefinition, hClone) == 0);
    require(bytesOf(hDefinition) == bytesOf(hClone));
    String sFormula;
    hDefinition->populateCurrencyTagColumnFormulaIfApplies(sFormula);
    require(!hDefinition->settings().empty());

    const Definition hOnce = throughXml(hDefinition);
    if (hOnce.isNull())
        return;
    // What stands behind a time-zone marker is dropped, so that a first way through XML may change a custom pattern.
    if (hDefinition->GetDefType() != WebValueFormatDefinition::kCustomFormat)
        require(WebValueFormatDefinition::CompareDefinitions(hDefinition, hOnce) == 0);
    require(WebValueFormatDefinition::CompareDefinitions(hOnce, throughXml(hOnce)) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const Locale kTurkish = LocaleTagLookup::lookupOrDefault(L"tr-TR");  // the percent sign stands in front
    Assertion::setHandler(&stopAtOtherAssertions);
    const std::string_view sXml(reinterpret_cast<const char*>(pData), nSize);
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(sXml, nullptr, XmlParseOptions::reportFragment());
    if (!tDocument)
        return 0;
    const Definition hDefinition = WebValueFormatDefinition::DynamicReadXML(tDocument->root());
    if (hDefinition.isNull())
        return 0;
    requireExcelForms(hDefinition, Locale::kUSA);
    requireExcelForms(hDefinition, kTurkish);
    requireSameAgain(hDefinition);
    return 0;
}

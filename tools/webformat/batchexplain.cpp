#include <array>

#include "batchrequest.h"
#include "inputerror.h"
#include "threadcollector.h"
#include "webbedrock/utf8.h"
#include "webformat/datepattern.h"
#include "webformat/durationpattern.h"
#include "webformat/numericpattern.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

std::string itemsOf(const NumericPattern& tPattern, const NumericPattern::Section& tSection)
{
    std::vector<JsonObject> vItems;
    for (const NumericPattern::Item& tItem : tSection.vDigits)
        vItems.push_back(JsonObject()
                             .add("type", NumericPattern::typeName(tItem.eType))
                             .add("start", tItem.nStartDigit)
                             .add("end", tItem.nEndDigit)
                             .add("text", tPattern.text(tItem))
                             .add("numerator", tItem.nMultiplierNumerator)
                             .add("denominator", tItem.nMultiplierDenominator));
    return jsonArray(vItems);
}

std::string flagsOf(const NumericPattern::Section& tSection)
{
    constexpr std::array<const char*, 3> aScales = {"none", "auto", "fixed"};
    return JsonObject()
        .add("grouping", tSection.bGrouping)
        .add("currency", tSection.bCurrency)
        .add("percent", tSection.bPercent)
        .add("power10", tSection.nPower10)
        .add("minFractionDigits", static_cast<unsigned long>(tSection.nMinFractionDigits))
        .add("maxFractionDigits", static_cast<unsigned long>(tSection.nMaxFractionDigits))
        .add("scale", aScales[tSection.eScaleFactor])
        .add("scaleIndicator", tSection.sScaleIndicator)
        .add("validExcelPattern", tSection.bValidExcelPattern)
        .add("scalingComma", tSection.bScalingComma)
        .text();
}

std::string modsOf(const NumericPattern::Section& tSection)
{
    std::vector<JsonObject> vMods;
    for (const NumericPattern::Modulus& tMod : tSection.vMods)
        vMods.push_back(JsonObject().add("div", tMod.nDiv).add("mod", tMod.nMod).add("mult", tMod.nMult));
    return jsonArray(vMods);
}

// A section opens an object that the next one is the last member of; sections may be many, so that no recursion walks
// them.
std::string openedSection(const NumericPattern& tPattern, const NumericPattern::Section& tSection)
{
    const std::string sClosed = JsonObject()
                                    .addRaw("items", itemsOf(tPattern, tSection))
                                    .addRaw("flags", flagsOf(tSection))
                                    .addRaw("mods", modsOf(tSection))
                                    .text();
    return sClosed.substr(0, sClosed.size() - 1) + ",\"next\":";
}

void explainNumeric(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const NumericPattern tPattern = NumericPattern::parse(tRequest.requiredWideText("pattern"), tRequest.locale(),
                                                          tRequest.output(), tRequest.language());
    const std::vector<NumericPattern::Section>& vSections = tPattern.sections();
    const NumericPattern::Section& tFirst = vSections.front();
    tResponse.addRaw("items", itemsOf(tPattern, tFirst))
        .addRaw("flags", flagsOf(tFirst))
        .addRaw("mods", modsOf(tFirst));
    std::string sNext;
    for (std::size_t nSection = 1; nSection < vSections.size(); ++nSection)
        sNext += openedSection(tPattern, vSections[nSection]);
    tResponse.addRaw("next", sNext + "null" + std::string(vSections.size() - 1, '}'));
}

void explainDate(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const Locale tLocale = tRequest.locale();
    DatePattern tPattern(tLocale, tRequest.output());
    tPattern.addCustomFormat(tRequest.requiredWideText("pattern"), tLocale, tRequest.output());
    std::vector<JsonObject> vItems;
    for (const DatePattern::Element& tElement : tPattern.elements())
        vItems.push_back(JsonObject()
                             .add("type", DatePattern::typeName(tElement.eType))
                             .add("pad", static_cast<unsigned long>(tElement.nPad))
                             .add("caps", tElement.bCaps)
                             .add("text", tPattern.text(tElement)));
    tResponse.addRaw("items", jsonArray(vItems));
}

void explainDuration(const BatchRequest& tRequest, JsonObject& tResponse)
{
    // Durations are written alike in every locale but for their digits, which a pattern does not hold.
    tRequest.locale();
    const DurationPattern tPattern = DurationPattern::parse(tRequest.requiredWideText("pattern"), tRequest.output());
    std::vector<JsonObject> vItems;
    for (const DurationFormat& tFormat : tPattern.formats().m_vDurationFormats)
        vItems.push_back(JsonObject()
                             .add("type", DurationPattern::typeName(tFormat.eType))
                             .add("pad", static_cast<unsigned long>(tFormat.nPad))
                             .add("text", tFormat.sText)
                             .add("basis", DurationPattern::basisName(tFormat.eOptionalBasedOn)));
    tResponse.addRaw("items", jsonArray(vItems));
}

template <class Number>
void addNumberOrNull(JsonObject& tObject, const char* pKey, Number nNumber, bool bGiven)
{
    if (bGiven)
        tObject.add(pKey, static_cast<unsigned long>(nNumber));
    else
        tObject.addNull(pKey);
}

std::string limitsOf(const SubTextFormatter::TruncateFormat& tLimits)
{
    JsonObject tObject;
    tObject.add("chars", static_cast<unsigned long>(tLimits.nChars));
    addNumberOrNull(tObject, "toolTip", tLimits.nToolTip,
                    tLimits.nToolTip != SubTextFormatter::TruncateFormat::knNoToolTip);
    return tObject.text();
}

std::string sizeOf(const SubTextFormatter::ImageFormat& tImage)
{
    JsonObject tObject;
    addNumberOrNull(tObject, "width", tImage.width, tImage.width >= 0);
    addNumberOrNull(tObject, "height", tImage.height, tImage.height >= 0);
    return tObject.text();
}

JsonObject itemOf(const SubTextFormatter::Format& tFormat)
{
    JsonObject tItem;
    if (tFormat.bLiteral)
        return tItem.add("type", "kLiteral").add("text", tFormat.sText);
    tItem.add("type", "kReference").add("textType", SubTextFormatter::typeName(tFormat.eTextType));
    if (tFormat.truncateFormat.bTruncate)
        tItem.addRaw("truncate", limitsOf(tFormat.truncateFormat));
    if (tFormat.eTextType == SubTextFormatter::kImage)
        tItem.addRaw("image", sizeOf(tFormat.imageFormat));
    return tItem;
}

std::string itemsOf(const SubTextFormatter& tFormatter)
{
    std::vector<JsonObject> vItems;
    for (const SubTextFormatter::Format& tFormat : tFormatter.formats())
        vItems.push_back(itemOf(tFormat));
    return jsonArray(vItems);
}

void explainText(const BatchRequest& tRequest, JsonObject& tResponse)
{
    // Texts are written alike in every locale.
    tRequest.locale();
    const WebTextFormatterImpl tFormatter(tRequest.requiredWideText("pattern"), tRequest.output());
    const Handle<const SubTextFormatter>& hEmpty = tFormatter.emptyFormatter();
    tResponse.addRaw("items", itemsOf(tFormatter.mainFormatter()))
        .addRaw("empty", hEmpty.isNull() ? std::string("null") : itemsOf(*hEmpty));
}

}  // namespace

void answerExplain(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const std::string sKind = tRequest.requiredText("kind");
    if (sKind == "numeric")
        explainNumeric(tRequest, tResponse);
    else if (sKind == "date")
        explainDate(tRequest, tResponse);
    else if (sKind == "duration")
        explainDuration(tRequest, tResponse);
    else if (sKind == "text")
        explainText(tRequest, tResponse);
    else
        throw InputError("\"kind\": found " + quotedForMessage(sKind) + ", expected numeric, date, duration or text");
}

}  // namespace tov

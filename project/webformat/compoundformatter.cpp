#include "webformat/compoundformatter.h"

#include <string_view>

#include "bufferguard.h"
#include "outputmarkup.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/compoundformatter";

}  // namespace

CompoundFormatter::CompoundFormatter(const String& sFormat, const WebValueFormatterHandle& hInner, OutputType eOutput)
    : WebValueFormatter(hInner->valueStorageType()),
      m_hSubFormatter(hInner),
      m_sCustomFormatString(sFormat),
      m_eOutputType(eOutput)
{
    for (std::size_t nAt = 0; nAt < sFormat.size();)
    {
        switch (const wchar_t nChar = sFormat[nAt++])
        {
        case L'@': m_vParts.emplace_back(); break;
        case L'"': addQuotedText(sFormat, nAt); break;
        default: addBareCharacter(nChar); break;
        }
    }
    compile();
}

CompoundFormatter::CompoundFormatter(const CompoundFormatter& tOther) = default;

CompoundFormatter::~CompoundFormatter() = default;

void CompoundFormatter::addBareCharacter(wchar_t nChar)
{
    if (m_vParts.empty() || m_vParts.back().sText.empty())
        m_vParts.emplace_back();
    m_vParts.back().sText += nChar;
}

// `nAt` moves from behind the opening quote to behind the closing one.
void CompoundFormatter::addQuotedText(std::wstring_view sFormat, std::size_t& nAt)
{
    Part tPart;
    while (nAt < sFormat.size())
    {
        wchar_t nChar = sFormat[nAt++];
        if (nChar == L'"')
            break;
        if (nChar == L'\\' && nAt < sFormat.size())
            nChar = sFormat[nAt++];
        tPart.sText += nChar;
    }
    if (!tPart.sText.empty())
        m_vParts.push_back(std::move(tPart));
}

void CompoundFormatter::compile()
{
    StringBufferTemplate<wchar_t, 255> tLiterals;
    for (const Part& tPart : m_vParts)
    {
        if (tPart.sText.empty())
            m_vValuePlaces.push_back(tLiterals.length());
        else
            encodeToBufferOfType(tLiterals, m_eOutputType, tPart.sText.data(), tPart.sText.size());
    }
    m_sLiterals = tLiterals.toString();
}

ValueFormatterTypes::OutputType CompoundFormatter::outputType() const
{
    return m_eOutputType;
}

String CompoundFormatter::GetCustomFormatString() const
{
    return m_sCustomFormatString;
}

void CompoundFormatter::impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    if (pValue)
        FormatValue(tBuffer, pValue);
    else if (m_eOutputType == kHTML)
        tBuffer.append(kNonBreakingSpace);
}

void CompoundFormatter::FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    BufferGuard tGuard(tBuffer);
    std::size_t nWritten = 0;
    for (const std::size_t nPlace : m_vValuePlaces)
    {
        tBuffer.append(m_sLiterals.data() + nWritten, nPlace - nWritten);
        nWritten = nPlace;
        m_hSubFormatter->formatToBuffer(tBuffer, pValue);
    }
    tBuffer.append(m_sLiterals.data() + nWritten, m_sLiterals.size() - nWritten);
    tGuard.keep();
}

Handle<CompoundFormatter, CompoundFormatter> CompoundFormatter::clone() const
{
    return WEBFORMAT_NEW(kSource) CompoundFormatter(*this);
}

}  // namespace tov

#include "webformat/formatterconfig.h"

#include "defaultformats.h"
#include "numericfamilies.h"
#include "outputencoders.h"
#include "utilities/pathfilter.h"
#include "webbedrock/assertion.h"
#include "webbedrock/dclsingleton.h"
#include "webformat/dateformatters.h"
#include "webformat/rawvalueformatter.h"
#include "webformat/textformatter.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;

constexpr char kSource[] = "webformat/formatterconfig";

constexpr PathFilter kpfNumericFormatter(L"Formatters/NumericFormatter");
constexpr wchar_t ksMaxDigits[] = L"maxSignificantDigits";

// Names the thread that fills, for as long as it does.
class FillingThread
{
public:
    explicit FillingThread(std::atomic<std::thread::id>& tThread) : m_tThread(tThread)
    {
        m_tThread.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ~FillingThread() { m_tThread.store(std::thread::id(), std::memory_order_relaxed); }
    FillingThread(const FillingThread&) = delete;
    FillingThread& operator=(const FillingThread&) = delete;

private:
    std::atomic<std::thread::id>& m_tThread;
};

std::size_t indexOf(std::size_t nTable, SQLDataType::DataType eType, OutputType eOutput)
{
    return nTable + eType * FormatterConfig::knOutputTypes + eOutput;
}

WebValueFormatterHandle literalNumber(const SQLDataType& tType, const wchar_t* pPattern, OutputType eOutput)
{
    const NumericFamily* pFamily = numericFamilyFor(tType.storageType());
    if (pFamily)
        return pFamily->pParseCustomFormat(pPattern, Locale::kUSA, eOutput, KTWUILanguage::kDefaultLanguage);
    Assertion::handleFailure("false", kSource, __LINE__);
    return nullptr;
}

WebValueFormatterHandle literalDate(WebDateFormatDefinition::Type eType, OutputType eOutput)
{
    return WebDateFormatter::CreateDefaultDateFormatter(eType, Locale::kUSA, KTWUILanguage::kDefaultLanguage, eOutput);
}

WebValueFormatterHandle xmlDate(const SQLDataType& tType, const wchar_t* pPattern, OutputType eOutput)
{
    return WebValueFormatter::GetCustomFormatter(tType, pPattern, Locale::kUSA, eOutput,
                                                 KTWUILanguage::kDefaultLanguage);
}

WebValueFormatterHandle newRawValueFormatter(OutputType eOutput)
{
    return WEBFORMAT_NEW(kSource) RawValueFormatter(eOutput);
}

WebValueFormatterHandle plainText(OutputType eOutput)
{
    return WebTextFormatter::ParseCustomFormat(s_ksSQLVarCharFormat, Locale::kUSA, eOutput);
}

}  // namespace

FormatterConfig::FormatterConfig() : m_vFormatters(knFormatters)
{
    m_tConfig.init(*this, &FormatterConfig::loadConfig);
}

FormatterConfig::~FormatterConfig() = default;

FormatterConfig& FormatterConfig::unfilledInstance()
{
    return *DCLSingleton<FormatterConfig>::getInstanceHandle().getPointer();
}

FormatterConfig& FormatterConfig::getInstance()
{
    FormatterConfig& tConfig = unfilledInstance();
    tConfig.setupFormatters();
    return tConfig;
}

const std::atomic<int>& FormatterConfig::maxSignificantDigitsSource()
{
    return unfilledInstance().m_nNumericFormatMaxSignificantDigits;
}

std::uint64_t FormatterConfig::lockAcquisitions()
{
    // The singleton's own lock is read last: asking for the object may take it.
    const std::uint64_t nFilling = unfilledInstance().m_tCrit.acquisitions();
    return nFilling + DCLSingleton<FormatterConfig>::lockAcquisitions();
}

int FormatterConfig::getNumericFormatterMaxSignificantDigits() const
{
    return m_nNumericFormatMaxSignificantDigits.load(std::memory_order_relaxed);
}

void FormatterConfig::setMaxSignificantDigitsForTestsOnly(int nDigits)
{
    m_nNumericFormatMaxSignificantDigits.store(nDigits, std::memory_order_relaxed);
}

bool FormatterConfig::loadConfig(const ConfigReader& tReader, EConfig)
{
    const ConfigValueExtractor tSettings(tReader, kpfNumericFormatter);
    const int nDigits = tSettings.getInt(ksMaxDigits, knDefaultMaxSignificantDigits);
    if (nDigits > 0)
        m_nNumericFormatMaxSignificantDigits.store(nDigits, std::memory_order_relaxed);
    return true;
}

bool FormatterConfig::mayBeRead() const
{
    // Acquire: whoever sees the flag sees the entries. The filling thread sees its own writes anyway.
    return m_bFilled.load(std::memory_order_acquire) ||
           m_tFillingThread.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void FormatterConfig::setupFormatters()
{
    if (mayBeRead())
        return;
    const CriticalSection::Lock tLock(m_tCrit);
    if (m_bFilled.load(std::memory_order_relaxed))
        return;
    const FillingThread tFilling(m_tFillingThread);
    m_bHaveWeInitializedDefaultFormatters.store(true, std::memory_order_relaxed);
    // XML numbers are the typed-literal formatters: that table comes first and whole.
    fillTable(0, &FormatterConfig::getTypedLiteralFormatterImpl);
    fillTable(knXmlTable, &FormatterConfig::getXmlValueFormatterImpl);
    m_bFilled.store(true, std::memory_order_release);
}

void FormatterConfig::fillTable(std::size_t nTable, BuildFormatter pBuild)
{
    for (std::size_t nOutput = 0; nOutput < knOutputTypes; ++nOutput)
    {
        for (std::size_t nType = 0; nType < knDataTypes; ++nType)
        {
            const auto eType = static_cast<SQLDataType::DataType>(nType);
            const auto eOutput = static_cast<OutputType>(nOutput);
            m_vFormatters[indexOf(nTable, eType, eOutput)] = (this->*pBuild)(SQLDataType(eType), eOutput);
        }
    }
}

const WebValueFormatterHandle& FormatterConfig::getFormatterRef(std::size_t nIndex) const
{
    static const WebValueFormatterHandle s_hNone;
    WEBFORMAT_ASSERT(kSource, m_bHaveWeInitializedDefaultFormatters);
    return nIndex < m_vFormatters.size() ? m_vFormatters[nIndex] : s_hNone;
}

WebValueFormatterHandle FormatterConfig::sharedFormatter(std::size_t nTable, const SQLDataType& tType,
                                                         OutputType eOutput, BuildFormatter pBuild) const
{
    if (!isOutputType(eOutput))
    {
        Assertion::handleFailure("false", kSource, __LINE__);
        return nullptr;
    }
    // The cached formatter reads values of the type's own storage and no other.
    if (!tType.hasOwnStorage())
        return (this->*pBuild)(tType, eOutput);
    const WebValueFormatterHandle& hCached = getFormatterRef(indexOf(nTable, tType.dataType(), eOutput));
    return hCached.isNull() ? (this->*pBuild)(tType, eOutput) : hCached;
}

WebValueFormatterHandle FormatterConfig::typedLiteralFormatter(const SQLDataType& tType, OutputType eOutput) const
{
    return sharedFormatter(0, tType, eOutput, &FormatterConfig::getTypedLiteralFormatterImpl);
}

WebValueFormatterHandle FormatterConfig::xmlValueFormatter(const SQLDataType& tType, OutputType eOutput) const
{
    return sharedFormatter(knXmlTable, tType, eOutput, &FormatterConfig::getXmlValueFormatterImpl);
}

WebValueFormatterHandle FormatterConfig::getTypedLiteralFormatterImpl(const SQLDataType& tType,
                                                                      OutputType eOutput) const
{
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryBinary: return newRawValueFormatter(eOutput);
    case SQLDataType::kPrimaryText: return plainText(eOutput);
    case SQLDataType::kPrimaryDate: return literalDate(WebDateFormatDefinition::kTypedODBCDate, eOutput);
    case SQLDataType::kPrimaryTime: return literalDate(WebDateFormatDefinition::kTypedODBCTime, eOutput);
    case SQLDataType::kPrimaryTimeStamp: return literalDate(WebDateFormatDefinition::kTypedODBCTimeStamp, eOutput);
    case SQLDataType::kPrimaryInteger: return literalNumber(tType, ksDefaultIntegerFormat, eOutput);
    case SQLDataType::kPrimaryFloating:
    case SQLDataType::kPrimaryCorvidNumber: return literalNumber(tType, ksDefaultFullPrecision, eOutput);
    default: return nullptr;
    }
}

WebValueFormatterHandle FormatterConfig::getXmlValueFormatterImpl(const SQLDataType& tType, OutputType eOutput) const
{
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryBinary: return newRawValueFormatter(eOutput);
    case SQLDataType::kPrimaryText: return plainText(eOutput);
    case SQLDataType::kPrimaryDate: return xmlDate(tType, s_ksXmlDateFormat, eOutput);
    case SQLDataType::kPrimaryTime: return xmlDate(tType, s_ksXmlTimeFormat, eOutput);
    case SQLDataType::kPrimaryTimeStamp: return xmlDate(tType, s_ksXmlDateTimeFormat, eOutput);
    case SQLDataType::kPrimaryInteger:
    case SQLDataType::kPrimaryFloating:
    case SQLDataType::kPrimaryCorvidNumber: return typedLiteralFormatter(tType, eOutput);
    default: return nullptr;
    }
}

}  // namespace tov

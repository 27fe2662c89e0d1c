#include "webformat/valueformatter.h"

#include <atomic>

#include "webbedrock/assertion.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/valueformatter";

// Inline sizes that hold typical values without the heap; longer ones spill.
constexpr std::size_t knStringScratch = 256;
constexpr std::size_t knStreamScratch = 511;

std::atomic<bool> s_bEscapeExcelFormulas{false};

}  // namespace

WebValueFormatter::WebValueFormatter(SQLDataType::StorageType eValueStorageType)
    : m_eValueStorageType(eValueStorageType)
{
}

WebValueFormatter::~WebValueFormatter() = default;

void WebValueFormatter::FormatToStream(WebOutputStream& tStream, const void* pValue) const
{
    StringBufferTemplate<wchar_t, knStreamScratch> tBuffer;
    impl_formatToBuffer(tBuffer, pValue);
    const wchar_t* pStart = tBuffer.terminated();
    tStream.write(pStart, tBuffer.length(), pStart + tBuffer.length());
}

bool WebValueFormatter::IsValidExcelPattern() const
{
    return true;
}

void WebValueFormatter::formatExcelValueToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    impl_formatToBuffer(tBuffer, pValue);
}

bool WebValueFormatter::checkAndReplaceFormatMaskForExcel(String&) const
{
    return false;
}

void WebValueFormatter::checkedFormatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue,
                                              SQLDataType::StorageType eStorage) const
{
    WEBFORMAT_ASSERT(kSource, eStorage == m_eValueStorageType);
    if (eStorage == m_eValueStorageType)
        impl_formatToBuffer(tBuffer, pValue);
}

String WebValueFormatter::formatAsString(const void* pValue) const
{
    StringBufferTemplate<wchar_t, knStringScratch> tBuffer;
    impl_formatToBuffer(tBuffer, pValue);
    return tBuffer.toString();
}

void WebValueFormatter::setEscapeExcelFormulas(bool bEscape)
{
    s_bEscapeExcelFormulas.store(bEscape, std::memory_order_relaxed);
}

bool WebValueFormatter::getEscapeExcelFormulas()
{
    return s_bEscapeExcelFormulas.load(std::memory_order_relaxed);
}

}  // namespace tov

#pragma once

#include <memory>

#include "webformat/dateformatters.h"
#include "webformat/datepattern.h"

namespace tov {

class DateProgram;

// The date engine: a date pattern compiled once, rendered for each value.
//
// Example: "dddd, d. MMMM yyyy" in de-DE -> "Dienstag, 5. März 2024"; "yyyy-MM-dd HH:mm:ss" -> "2024-03-05 07:08:09".
//
// The factories of `WebDateFormatter` make formatters ready for use. Who builds one element by element does so before
// it is shared: builders change the formatter, and each of them costs time for all the elements so far. From then on it
// is immutable, and any number of threads may format through it.
//
// A null value shows the null text; where that is empty "&nbsp;" in HTML and nothing elsewhere. With a Hebrew user
// interface HTML output stands between two left-to-right marks "&#x200e;".
//
// Rendering a value allocates only if the buffer has to grow; where memory runs out the buffer keeps its old contents.
class WEBFORMAT_EXPORT StandardDateFormatter : public WebDateFormatter
{
public:
    using EDateType = DatePattern::EDateType;

    // An element as a caller of AddFormat describes it.
    struct DateFormat
    {
        EDateType eType = DatePattern::kSeparator;
        unsigned nPad = 0;
        String sText;  // kSeparator: written as it stands, so encoded already
        bool bCaps = false;
        Locale tNewLocale;                         // kSetLocale
        WebValueFormatterHandle hSecondFormatter;  // kSecondWDecimal: a formatter of doubles
    };

    // A formatter without elements: every value is the empty text. `sPattern` is only remembered; see addCustomFormat.
    StandardDateFormatter(const Locale& tLocale, const KTWUILanguage& tLanguage, const String& sPattern,
                          OutputType eOutput);
    ~StandardDateFormatter() override;

    // Parses `sPattern` (see `DatePattern`) and appends its elements. `tLocale` is the locale of its predefined
    // formats; names stay those of the formatter's locale.
    void addCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput);

    // Builders; each appends one element.

    // 1: year of the century without padding; 2: two digits of it; 4: the whole year; any other: four digits.
    void AddYear(unsigned nCount);
    // `nPad` digits, the last ones of the number; 0: as many as there are. More than 31 digits are not written: each
    // value then raises the assertion "nPad < tov::BasicStringUtils::knNumberAsCharBase10BufSize".
    void AddMonth(unsigned nPad);
    void AddDay(unsigned nPad);
    void AddHour(bool bIs24, unsigned nPad);
    void AddMinute(unsigned nPad);
    void addSecond(unsigned nPad);
    // The second with its fraction, as the numeric pattern writes it in the formatter's locale.
    void addSecondWithDecimal(const String& sNumericPattern);
    // `nPad` 3: the short name; more: the full name (directly behind a day the one used inside dates); less: the first
    // character, in the case that the name has.
    void AddAlphaMonth(bool bCaps, unsigned nPad);
    void AddAlphaDOW(bool bCaps, unsigned nPad);
    void AddAMPM(bool bCaps, bool bTwo);
    void AddEra();
    // Texts are written as they stand: they are encoded for the output already.
    void AddSeparator(const String& sText);
    void AddSeparatorChar(wchar_t nChar);
    // The locale of the names from here on, and the formatter's own again.
    void SetLocale(const Locale& tLocale);
    void ResetLocale();
    // The one way to the day of the week as a number (kDOW: 0 for Monday). A kSecondWDecimal without a formatter makes
    // rendering throw InvalidHandleException.
    void AddFormat(const DateFormat& tFormat);

    // The text of null values, written as it stands.
    void setNullFormat(const String& sNullFormat) { m_sNullFormat = sNullFormat; }

    OutputType outputType() const override;
    String GetCustomFormatString() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;
    // Rounds the fraction of the second first where that may carry into the minute and further (59 s and more).
    void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const override;
    // The same without rounding first.
    void formatValueImpl(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const;

    const DatePattern& pattern() const { return m_tPattern; }

private:
    void bind();

    DatePattern m_tPattern;
    std::unique_ptr<const DateProgram> m_pProgram;
    String m_sNullFormat;
    String m_sCustomFormat;
    OutputType m_eOutput;
    bool m_bLanguageMark;
};

}  // namespace tov

#pragma once

#include <map>
#include <utility>

#include "webbedrock/export.h"
#include "webbedrock/handle.h"
#include "webbedrock/refcounted.h"
#include "webbedrock/string.h"

namespace tov {

// A currency: its symbol, its digits and where the symbol stands.
//
// Example: "loc:en-US" is the symbol "$", 2 digits, the layout "$#" and for negative amounts "-$#" ("minus") and "($#)"
// ("parens").
//
// Currencies come from `CurrencyLookup`; they are immutable and live as long as the process. Any thread.
class WEBFORMAT_EXPORT Currency : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    // How negative amounts are laid out.
    class WEBFORMAT_EXPORT NegativeFormat
    {
    public:
        explicit NegativeFormat(String sFormat) : m_sFormat(std::move(sFormat)) {}
        const String& getFormat() const { return m_sFormat; }

    private:
        String m_sFormat;
    };

    // By the name of the style: "minus", "parens".
    using NegativeFormats = std::map<String, NegativeFormat>;

    Currency(String sSymbol, unsigned nDefaultDigits, bool bGrouping, String sFormat, NegativeFormats tNegativeFormats);
    ~Currency() override;

    const String& getCurrencySymbol() const { return m_sSymbol; }
    // Fraction digits: 2 for the dollar, 0 for the yen.
    unsigned getDefaultDigits() const { return m_nDefaultDigits; }
    // Whether amounts are grouped in thousands.
    bool hasGrouping() const { return m_bGrouping; }
    // The layout of positive amounts: "#" is the number, "$" the symbol, blanks and "(", ")", "-" stand for themselves.
    const String& getFormat() const { return m_sFormat; }
    const NegativeFormats& getNegativeFormats() const { return m_tNegativeFormats; }

private:
    String m_sSymbol;
    unsigned m_nDefaultDigits;
    bool m_bGrouping;
    String m_sFormat;
    NegativeFormats m_tNegativeFormats;
};

using CurrencyHandle = Handle<const Currency, const Currency>;

}  // namespace tov

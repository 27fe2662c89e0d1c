#include "intl/currency.h"

namespace tov {

Currency::Currency(String sSymbol, unsigned nDefaultDigits, bool bGrouping, String sFormat,
                   NegativeFormats tNegativeFormats)
    : m_sSymbol(std::move(sSymbol)),
      m_nDefaultDigits(nDefaultDigits),
      m_bGrouping(bGrouping),
      m_sFormat(std::move(sFormat)),
      m_tNegativeFormats(std::move(tNegativeFormats))
{
}

Currency::~Currency() = default;

}  // namespace tov

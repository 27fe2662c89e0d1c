#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "intl/localerecord.h"

namespace tov {

// All locales of the locale data, each with the place of its record. A finite set: nothing else is ever cached.
//
// Any thread, without a lock. A record is read outside of everything and the first to store it wins.
class KnownLocales
{
public:
    // The records live as long as the process.
    static const KnownLocales& instance();

    std::size_t size() const { return m_nSize; }
    const std::string& idAt(std::size_t nIndex) const { return m_pEntries[nIndex].sId; }

    // The index of an identifier ("en_US"), whose case counts.
    std::optional<std::size_t> indexOf(std::string_view sId) const;

    // Reads the record if nobody has yet. `nIndex` is below size().
    const LocaleRecord& record(std::size_t nIndex, MonthNames eMonths = MonthNames::kByThemselves) const;

private:
    struct Entry
    {
        std::string sId;
        mutable std::atomic<const LocaleRecord*> tRecords[static_cast<int>(MonthNames::kEnd_)] = {};
    };

    KnownLocales();

    std::size_t m_nSize;
    std::unique_ptr<Entry[]> m_pEntries;
};

}  // namespace tov

#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include "utilities/config.h"
#include "utilities/configreader.h"
#include "webbedrock/criticalsection.h"
#include "webbedrock/export.h"
#include "webbedrock/refcounted.h"
#include "webformat/valueformatter.h"

namespace tov {

// The library's one configuration object: the most significant digits that real numbers show, and the shared
// formatters of typed SQL literals and XML values, one for each data type and output type.
//
// Example: the configuration file
//     <Configuration><Formatters><NumericFormatter maxSignificantDigits="12"/></Formatters></Configuration>
// makes getNumericFormatterMaxSignificantDigits() 12, from the next value on that any formatter writes.
//
// Made on first use, filled once, never destroyed. Any thread.
class WEBFORMAT_EXPORT FormatterConfig : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    static constexpr int knDefaultMaxSignificantDigits = 15;
    static constexpr std::size_t knDataTypes = SQLDataType::kDataTypeEnd_;
    static constexpr std::size_t knOutputTypes = ValueFormatterTypes::kLastType;
    // The cache: typed literals from index 0, XML values from index 176, each at data type x 8 + output type.
    static constexpr std::size_t knXmlTable = knDataTypes * knOutputTypes;
    static constexpr std::size_t knFormatters = 2 * knXmlTable;

    ~FormatterConfig() override;

    // The object, its formatters filled. While one thread fills them, that thread is answered at once (the cache is
    // then complete as far as it has come) and all others wait. Once filled, the eleventh and all later calls take no
    // lock.
    static FormatterConfig& getInstance();

    // The limit as it is now, for formatters that read it once a value (a relaxed load). Makes the object but does not
    // fill it, so that it may be called while formatters are built. Valid as long as the process lives.
    static const std::atomic<int>& maxSignificantDigitsSource();

    // How often the locks behind getInstance have been taken so far; for tests and monitoring.
    static std::uint64_t lockAcquisitions();

    int getNumericFormatterMaxSignificantDigits() const;
    void setMaxSignificantDigitsForTestsOnly(int nDigits);

    // Reads "Formatters/NumericFormatter", attribute "maxSignificantDigits". No such element: 15. No such attribute, or
    // one that is no number: 15. A value of 0 or below leaves the limit as it is. Returns true.
    bool loadConfig(const ConfigReader& tReader, EConfig eKind);

    // Fills the cache if nobody has yet; returns when it is filled, to the filling thread at once. Should memory run
    // out half way, std::bad_alloc leaves it and the next call fills again.
    void setupFormatters();

    // The shared formatters. An entry that is empty (no formatter applies) is tried again with every call, a type held
    // in another storage than its own gets a new formatter for that storage. An output type outside 0 to 7 raises the
    // assertion "false" (source webformat/formatterconfig) and gives a null handle.
    WebValueFormatterHandle typedLiteralFormatter(const SQLDataType& tType,
                                                  ValueFormatterTypes::OutputType eOutput) const;
    WebValueFormatterHandle xmlValueFormatter(const SQLDataType& tType, ValueFormatterTypes::OutputType eOutput) const;

    // Build one formatter, in en-US and the default language. Null for the invalid and unknown types; a numeric type in
    // a storage that holds no numbers also raises the assertion "false" (source webformat/formatterconfig).
    //
    // Typed literals: integers "#0", reals "#0.###################", text "@", dates in the typed ODBC forms.
    WebValueFormatterHandle getTypedLiteralFormatterImpl(const SQLDataType& tType,
                                                         ValueFormatterTypes::OutputType eOutput) const;
    // XML values: numbers are the typed-literal formatters themselves, dates "yyy-MM-dd".
    WebValueFormatterHandle getXmlValueFormatterImpl(const SQLDataType& tType,
                                                     ValueFormatterTypes::OutputType eOutput) const;

    // The cache entry at `nIndex`, 0 to 351; a null handle beyond. Before the filling has begun it raises the assertion
    // "m_bHaveWeInitializedDefaultFormatters" (source webformat/formatterconfig).
    const WebValueFormatterHandle& getFormatterRef(std::size_t nIndex) const;

private:
    template <class T>
    friend struct StandardFactory;

    using BuildFormatter = WebValueFormatterHandle (FormatterConfig::*)(const SQLDataType&,
                                                                        ValueFormatterTypes::OutputType) const;

    FormatterConfig();

    static FormatterConfig& unfilledInstance();

    bool mayBeRead() const;
    void fillTable(std::size_t nTable, BuildFormatter pBuild);
    WebValueFormatterHandle sharedFormatter(std::size_t nTable, const SQLDataType& tType,
                                            ValueFormatterTypes::OutputType eOutput, BuildFormatter pBuild) const;

    std::vector<WebValueFormatterHandle> m_vFormatters;
    std::atomic<bool> m_bHaveWeInitializedDefaultFormatters{false};  // set when the filling begins, never cleared
    std::atomic<bool> m_bFilled{false};                              // set when it is done
    std::atomic<std::thread::id> m_tFillingThread{};
    CriticalSection m_tCrit;  // held while filling
    std::atomic<int> m_nNumericFormatMaxSignificantDigits{knDefaultMaxSignificantDigits};
    Config<FormatterConfig> m_tConfig;
};

}  // namespace tov

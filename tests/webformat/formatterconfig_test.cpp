#include "webformat/formatterconfig.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "corefacade/corvidnumber.h"
#include "corefacade/datetime.h"
#include "support/collected.h"
#include "support/newprocess.h"
#include "webbedrock/dclsingleton.h"

namespace tov {
namespace {

using Type = SQLDataType;
using Types = ValueFormatterTypes;

constexpr std::size_t kLastXmlEntry = 351;  // varbinary for kXLSX

// Puts the limit and the process's configuration back as they were.
class RestoredLimit
{
public:
    RestoredLimit() { FormatterConfig::getInstance(); }
    ~RestoredLimit()
    {
        ConfigReader::setGlobalInstance(nullptr);
        FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(
            FormatterConfig::knDefaultMaxSignificantDigits);
    }
};

std::shared_ptr<ConfigReader> readerOf(const std::string& sElements)
{
    return ConfigReader::fromText("<Configuration>" + sElements + "</Configuration>");
}

int limit()
{
    return FormatterConfig::getInstance().getNumericFormatterMaxSignificantDigits();
}

struct LimitRow
{
    int nLine;
    const char* pElements;
    int nExpected;  // where the limit was 7 before
};

constexpr LimitRow kLimits[] = {
    {__LINE__, "", 15},
    {__LINE__, "<Formatters/>", 15},
    {__LINE__, "<NumericFormatter maxSignificantDigits='20'/>", 15},  // not at that path
    {__LINE__, "<Formatters><NumericFormatter/></Formatters>", 15},
    {__LINE__, "<Formatters><NumericFormatter maxSignificantDigits='20'/></Formatters>", 20},
    {__LINE__, "<Formatters><NumericFormatter maxSignificantDigits='1'/></Formatters>", 1},
    {__LINE__, "<Formatters><NumericFormatter maxSignificantDigits='0'/></Formatters>", 7},
    {__LINE__, "<Formatters><NumericFormatter maxSignificantDigits='-4'/></Formatters>", 7},
    {__LINE__, "<Formatters><NumericFormatter maxSignificantDigits='many'/></Formatters>", 15},
    {__LINE__, "<Formatters><NumericFormatter maxSignificantDigits='99999999999'/></Formatters>", 15},
};

TEST(FormatterConfig, ReadsTheLimitOfSignificantDigits)
{
    const RestoredLimit tRestored;
    for (const LimitRow& tRow : kLimits)
    {
        const std::shared_ptr<ConfigReader> pReader = readerOf(tRow.pElements);
        ASSERT_NE(pReader, nullptr) << "row at line " << tRow.nLine;
        FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(7);
        EXPECT_TRUE(FormatterConfig::getInstance().loadConfig(*pReader, ConfigBase::kReload));
        EXPECT_EQ(limit(), tRow.nExpected) << "row at line " << tRow.nLine;
    }
}

TEST(FormatterConfig, FollowsTheProcessesConfiguration)
{
    const RestoredLimit tRestored;
    const std::shared_ptr<ConfigReader> pReader =
        readerOf("<Formatters><NumericFormatter maxSignificantDigits='12'/></Formatters>");
    ConfigReader::setGlobalInstance(pReader);
    EXPECT_EQ(limit(), 12);
    FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(3);
    pReader->reload();
    EXPECT_EQ(limit(), 12);
    ConfigReader::setGlobalInstance(nullptr);
    EXPECT_EQ(limit(), 12);
    ConfigReader::setGlobalInstance(readerOf(""));
    EXPECT_EQ(limit(), 15);
}

TEST(FormatterConfig, StartsWithTheLimitOfTheConfigurationThatIsThereBeforeIt)
{
    expectInNewProcess(
        []
        {
            ConfigReader::setGlobalInstance(
                readerOf("<Formatters><NumericFormatter maxSignificantDigits='9'/></Formatters>"));
            return FormatterConfig::maxSignificantDigitsSource().load() == 9 && limit() == 9;
        });
    expectInNewProcess([] { return limit() == 15; });
}

TEST(FormatterConfig, ChangesTheLimitOfFormattersThatExistAlready)
{
    const RestoredLimit tRestored;
    const WebValueFormatterHandle hFormatter =
        WebValueFormatter::GetTypedLiteralFormatter(Type(Type::kDouble), Types::kText);
    const double dSum = 0.1 + 0.2;
    EXPECT_EQ(hFormatter->formatAsString(&dSum), L"0.3");
    FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(17);
    EXPECT_EQ(&FormatterConfig::maxSignificantDigitsSource(), &FormatterConfig::maxSignificantDigitsSource());
    EXPECT_EQ(FormatterConfig::maxSignificantDigitsSource().load(), 17);
    EXPECT_EQ(hFormatter->formatAsString(&dSum), L"0.30000000000000004");
}

TEST(FormatterConfig, MakesTheSourceOfTheLimitWithoutFillingTheCache)
{
    expectInNewProcess(
        []
        {
            FormatterConfig::maxSignificantDigitsSource();
            const CollectedAssertions tAssertions;
            const FormatterConfig& tConfig = *DCLSingleton<FormatterConfig>::getInstanceHandle();
            const bool bEmpty = tConfig.getFormatterRef(kLastXmlEntry).isNull();
            return bEmpty && tAssertions.count() == 1 &&
                   tAssertions.all()[0].sExpression == "m_bHaveWeInitializedDefaultFormatters" &&
                   tAssertions.all()[0].sSource == "webformat/formatterconfig";
        });
}

struct EntryRow
{
    int nLine;
    Type::DataType eType;
    const wchar_t* pPattern;               // null: no formatter
    const wchar_t* pXmlPattern = nullptr;  // null: the same formatter, where there is one
};

constexpr wchar_t kFullPrecision[] = L"#0.###################";

constexpr EntryRow kEntries[] = {
    {__LINE__, Type::kInvalid, nullptr},
    {__LINE__, Type::kUnknown, nullptr},
    {__LINE__, Type::kBit, L"#0"},
    {__LINE__, Type::kTinyInt, L"#0"},
    {__LINE__, Type::kSmallInt, L"#0"},
    {__LINE__, Type::kInteger, L"#0"},
    {__LINE__, Type::kUnsignedInteger, L"#0"},
    {__LINE__, Type::kBigInt, L"#0"},
    {__LINE__, Type::kUnsignedBigInt, L"#0"},
    {__LINE__, Type::kReal, kFullPrecision},
    {__LINE__, Type::kFloat, kFullPrecision},
    {__LINE__, Type::kDouble, kFullPrecision},
    {__LINE__, Type::kNumeric, kFullPrecision},
    {__LINE__, Type::kDecimal, kFullPrecision},
    {__LINE__, Type::kChar, L"@", L"@"},
    {__LINE__, Type::kVarChar, L"@", L"@"},
    {__LINE__, Type::kLongVarChar, L"@", L"@"},
    {__LINE__, Type::kDate, L"\"date '\"yyy-MM-dd\"'\"", L"yyy-MM-dd"},
    {__LINE__, Type::kTime, L"\"time '\"HH:mm:ss.#########\"'\"", L"HH:mm:ss.#########"},
    {__LINE__, Type::kTimeStamp, L"\"timestamp '\"yyy-MM-dd HH:mm:ss.#########\"'\"",
     L"yyy-MM-dd\"T\"HH:mm:ss.#########"},
    {__LINE__, Type::kBinary, L"", L""},
    {__LINE__, Type::kVarBinary, L"", L""},
};

TEST(FormatterConfig, HoldsATypedLiteralFormatterForEveryTypeAndOutput)
{
    const CollectedAssertions tAssertions;
    const FormatterConfig& tConfig = FormatterConfig::getInstance();
    for (const EntryRow& tRow : kEntries)
    {
        for (int nOutput = 0; nOutput < Types::kLastType; ++nOutput)
        {
            const auto eOutput = static_cast<Types::OutputType>(nOutput);
            const WebValueFormatterHandle hFormatter =
                WebValueFormatter::GetTypedLiteralFormatter(Type(tRow.eType), eOutput);
            ASSERT_EQ(hFormatter.isNull(), tRow.pPattern == nullptr) << "row at line " << tRow.nLine;
            EXPECT_TRUE(hFormatter == tConfig.getFormatterRef(tRow.eType * 8 + nOutput))
                << "row at line " << tRow.nLine;
            if (!tRow.pPattern)
                continue;
            EXPECT_EQ(hFormatter->GetCustomFormatString(), tRow.pPattern) << "row at line " << tRow.nLine;
            EXPECT_EQ(hFormatter->outputType(), eOutput) << "row at line " << tRow.nLine;
            EXPECT_EQ(hFormatter->valueStorageType(), Type(tRow.eType).storageType()) << "row at line " << tRow.nLine;
        }
    }
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(FormatterConfig, LeavesNoEntryEmptyButThoseOfInvalidAndUnknownTypes)
{
    const FormatterConfig& tConfig = FormatterConfig::getInstance();
    std::size_t nEmpty = 0;
    for (std::size_t nEntry = 0; nEntry < FormatterConfig::knFormatters; ++nEntry)
    {
        const std::size_t nType = nEntry % FormatterConfig::knXmlTable / FormatterConfig::knOutputTypes;
        EXPECT_EQ(tConfig.getFormatterRef(nEntry).isNull(), nType <= Type::kUnknown) << nEntry;
        nEmpty += tConfig.getFormatterRef(nEntry).isNull() ? 1 : 0;
    }
    EXPECT_EQ(nEmpty, 32u);
}

TEST(FormatterConfig, SharesNumbersBetweenTypedLiteralsAndXml)
{
    const FormatterConfig& tConfig = FormatterConfig::getInstance();
    for (const EntryRow& tRow : kEntries)
    {
        for (int nOutput = 0; nOutput < Types::kLastType; ++nOutput)
        {
            const Type tType(tRow.eType);
            const auto eOutput = static_cast<Types::OutputType>(nOutput);
            const WebValueFormatterHandle hXml = WebValueFormatter::getXmlValueFormatter(tType, eOutput);
            EXPECT_TRUE(hXml == tConfig.getFormatterRef(176 + tRow.eType * 8 + nOutput))
                << "row at line " << tRow.nLine;
            EXPECT_EQ((hXml == WebValueFormatter::GetTypedLiteralFormatter(tType, eOutput)),
                      tRow.pXmlPattern == nullptr)
                << "row at line " << tRow.nLine;
            if (!tRow.pPattern)
                continue;
            EXPECT_EQ(hXml->GetCustomFormatString(), tRow.pXmlPattern ? tRow.pXmlPattern : tRow.pPattern)
                << "row at line " << tRow.nLine;
        }
    }
}

TEST(FormatterConfig, WritesDatesAndTimesAsLiteralsAndForXml)
{
    const DateTime tValue(800, 3, 5, 7, 8, 9, 120'000'000);
    const auto literal = [&](Type::DataType eType, Types::OutputType eOutput)
    { return WebValueFormatter::GetTypedLiteralFormatter(Type(eType), eOutput)->formatAsString(&tValue); };
    const auto xml = [&](Type::DataType eType)
    { return WebValueFormatter::getXmlValueFormatter(Type(eType), Types::kXML)->formatAsString(&tValue); };
    EXPECT_EQ(literal(Type::kDate, Types::kSQL), L"date '0800-03-05'");
    EXPECT_EQ(literal(Type::kTime, Types::kSQL), L"time '07:08:09.12'");
    EXPECT_EQ(literal(Type::kTimeStamp, Types::kSQL), L"timestamp '0800-03-05 07:08:09.12'");
    // The quotes are literal text: an output that has its own way with quotes encodes them.
    EXPECT_EQ(literal(Type::kDate, Types::kHTML), L"date &#39;0800-03-05&#39;");
    EXPECT_EQ(literal(Type::kDate, Types::kSQLLiteral), L"date ''0800-03-05''");
    EXPECT_EQ(xml(Type::kDate), L"0800-03-05");
    EXPECT_EQ(xml(Type::kTime), L"07:08:09.12");
    EXPECT_EQ(xml(Type::kTimeStamp), L"0800-03-05T07:08:09.12");
}

TEST(FormatterConfig, BuildsAFormatterOfItsOwnForATypeHeldInAnotherStorage)
{
    for (const Type::StorageType eStorage : {Type::kStorageDouble, Type::kStorageUInt32, Type::kStorageInt64,
                                             Type::kStorageUInt64, Type::kStorageCorvidNumber})
    {
        const Type tType(Type::kInteger, eStorage);
        for (const WebValueFormatterHandle& hFormatter :
             {WebValueFormatter::GetTypedLiteralFormatter(tType, Types::kXML),
              WebValueFormatter::getXmlValueFormatter(tType, Types::kXML)})
        {
            ASSERT_FALSE(hFormatter.isNull()) << eStorage;
            EXPECT_EQ(hFormatter->valueStorageType(), eStorage);
            EXPECT_EQ(hFormatter->GetCustomFormatString(), L"#0");
        }
    }
    const double dSeven = 7;
    EXPECT_EQ(WebValueFormatter::GetTypedLiteralFormatter(Type(Type::kInteger, Type::kStorageDouble), Types::kText)
                  ->formatAsString(&dSeven),
              L"7");
}

TEST(FormatterConfig, RefusesNumbersInStoragesThatHoldNone)
{
    for (const Type::DataType eType : {Type::kInteger, Type::kDouble, Type::kDecimal})
    {
        const CollectedAssertions tAssertions;
        const Type tType(eType, Type::kStorageWChar);
        EXPECT_TRUE(WebValueFormatter::GetTypedLiteralFormatter(tType, Types::kText).isNull());
        EXPECT_TRUE(WebValueFormatter::getXmlValueFormatter(tType, Types::kText).isNull());
        ASSERT_EQ(tAssertions.count(), 2u);
        for (const CollectedAssertion& tAssertion : tAssertions.all())
        {
            EXPECT_EQ(tAssertion.sExpression, "false");
            EXPECT_EQ(tAssertion.sSource, "webformat/formatterconfig");
        }
    }
}

TEST(FormatterConfig, HasNothingForInvalidAndUnknownTypesAndDoesNotAssert)
{
    const CollectedAssertions tAssertions;
    for (const Type::DataType eType : {Type::kInvalid, Type::kUnknown})
    {
        EXPECT_TRUE(WebValueFormatter::GetTypedLiteralFormatter(Type(eType), Types::kText).isNull());
        EXPECT_TRUE(WebValueFormatter::getXmlValueFormatter(Type(eType), Types::kText).isNull());
    }
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(FormatterConfig, StaysInsideItsTablesForWhatIsNoOutputType)
{
    const Type tType(Type::kVarBinary);
    for (const int nOutput : {-1, 8, 9, 1000000})
    {
        const CollectedAssertions tAssertions;
        const auto eOutput = static_cast<Types::OutputType>(nOutput);
        EXPECT_TRUE(WebValueFormatter::GetTypedLiteralFormatter(tType, eOutput).isNull()) << nOutput;
        EXPECT_TRUE(WebValueFormatter::getXmlValueFormatter(tType, eOutput).isNull()) << nOutput;
        EXPECT_EQ(tAssertions.count(), 2u) << nOutput;
    }
    EXPECT_TRUE(FormatterConfig::getInstance().getFormatterRef(352).isNull());
    EXPECT_TRUE(FormatterConfig::getInstance().getFormatterRef(static_cast<std::size_t>(-1)).isNull());
}

TEST(FormatterConfig, TakesNoLockOnceTenCallsAreDone)
{
    for (int i = 0; i < 10; ++i)
        FormatterConfig::getInstance();
    const std::uint64_t nBefore = FormatterConfig::lockAcquisitions();
    for (int i = 0; i < 1000; ++i)
    {
        FormatterConfig::getInstance();
        FormatterConfig::maxSignificantDigitsSource();
        WebValueFormatter::GetTypedLiteralFormatter(Type(Type::kInteger), Types::kText);
    }
    EXPECT_EQ(FormatterConfig::lockAcquisitions(), nBefore);
}

TEST(FormatterConfig, TakesTheCreationLockForTheFirstTenCallsOnly)
{
    expectInNewProcess(
        []
        {
            for (int nCall = 1; nCall <= 10; ++nCall)
            {
                FormatterConfig::maxSignificantDigitsSource();
                if (DCLSingleton<FormatterConfig>::lockAcquisitions() != static_cast<std::uint64_t>(nCall))
                    return false;
            }
            FormatterConfig::maxSignificantDigitsSource();
            return DCLSingleton<FormatterConfig>::lockAcquisitions() == 10;
        });
}

bool firstUseFromManyThreads()
{
    constexpr int kThreads = 12;
    std::atomic<int> nReady{0};
    std::atomic<int> nWrong{0};
    std::array<WebValueFormatterHandle, kThreads> aFormatters;
    std::vector<std::thread> vThreads;
    for (int nThread = 0; nThread < kThreads; ++nThread)
    {
        vThreads.emplace_back(
            [&, nThread]
            {
                for (++nReady; nReady < kThreads;)
                    std::this_thread::yield();
                // The first call of each thread is another one, and whichever it is finds the cache whole.
                if (nThread % 3 == 0)
                    nWrong += FormatterConfig::getInstance().getFormatterRef(kLastXmlEntry).isNull();
                else if (nThread % 3 == 1)
                    nWrong += FormatterConfig::maxSignificantDigitsSource() != 15;
                const Type tType(Type::kDecimal);
                aFormatters[nThread] = WebValueFormatter::getXmlValueFormatter(tType, Types::kXML);
                nWrong += !(WebValueFormatter::GetTypedLiteralFormatter(tType, Types::kXML) == aFormatters[nThread]);
                nWrong += FormatterConfig::getInstance().getFormatterRef(kLastXmlEntry).isNull();
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    for (const WebValueFormatterHandle& hFormatter : aFormatters)
        nWrong += hFormatter.isNull() || !(hFormatter == aFormatters[0]);
    return nWrong == 0;
}

TEST(FormatterConfig, IsMadeAndFilledOnceHoweverManyThreadsAreFirst)
{
    for (int i = 0; i < 5; ++i)
        expectInNewProcess(&firstUseFromManyThreads);
}

// What happens while the cache is being filled: the allocation of a raw formatter is inside it.
struct WhileFilling
{
    bool bSeen = false;
    bool bAnsweredEarly = false;
    bool bOtherThreadWaited = false;
    std::thread tOther;
};

WhileFilling* s_pWhileFilling = nullptr;

void* allocateAndLookAround(std::size_t nBytes, const char* pFile, int)
{
    if (std::string(pFile) == "webformat/formatterconfig" && !s_pWhileFilling->bSeen)
    {
        WhileFilling& tSeen = *s_pWhileFilling;
        tSeen.bSeen = true;
        tSeen.tOther = std::thread(
            [&tSeen]
            { tSeen.bOtherThreadWaited = !FormatterConfig::getInstance().getFormatterRef(kLastXmlEntry).isNull(); });
        tSeen.bAnsweredEarly = FormatterConfig::getInstance().getFormatterRef(kLastXmlEntry).isNull() &&
                               FormatterConfig::maxSignificantDigitsSource() == 15;
    }
    return ::operator new(nBytes);
}

bool lookAroundWhileFilling()
{
    WhileFilling tSeen;
    s_pWhileFilling = &tSeen;
    MemoryAllocatorGateway::setFunctions(&allocateAndLookAround, [](void* pMemory) { ::operator delete(pMemory); });
    const bool bFilled = !FormatterConfig::getInstance().getFormatterRef(kLastXmlEntry).isNull();
    tSeen.tOther.join();
    return bFilled && tSeen.bSeen && tSeen.bAnsweredEarly && tSeen.bOtherThreadWaited;
}

TEST(FormatterConfig, AnswersOnlyTheFillingThreadEarly)
{
    for (int i = 0; i < 5; ++i)
        expectInNewProcess(&lookAroundWhileFilling);
}

int s_nFailAfter = 0;

void* allocateSometimes(std::size_t nBytes, const char* pFile, int)
{
    if (std::string(pFile) == "webformat/formatterconfig" && --s_nFailAfter == 0)
        throw std::bad_alloc();
    return ::operator new(nBytes);
}

bool fillAgainAfterRunningOut()
{
    s_nFailAfter = 5;
    MemoryAllocatorGateway::setFunctions(&allocateSometimes, [](void* pMemory) { ::operator delete(pMemory); });
    bool bRanOut = false;
    try
    {
        FormatterConfig::getInstance();
    }
    catch (const std::bad_alloc&)
    {
        bRanOut = true;
    }
    return bRanOut && !FormatterConfig::getInstance().getFormatterRef(kLastXmlEntry).isNull();
}

TEST(FormatterConfig, IsFilledByTheNextCallWhenMemoryRanOut)
{
    expectInNewProcess(&fillAgainAfterRunningOut);
}

TEST(FormatterConfig, MayBeReloadedWhileItIsRead)
{
    const RestoredLimit tRestored;
    const WebValueFormatterHandle hFormatter =
        WebValueFormatter::GetTypedLiteralFormatter(Type(Type::kDouble), Types::kText);
    std::atomic<bool> bDone{false};
    std::atomic<int> nWrong{0};
    std::vector<std::thread> vReaders;
    FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(12);
    for (int i = 0; i < 8; ++i)
    {
        vReaders.emplace_back(
            [&]
            {
                const double dThird = 1.0 / 3;
                while (!bDone)
                {
                    const int nLimit = limit();
                    const std::size_t nDigits = hFormatter->formatAsString(&dThird).size() - 2;
                    nWrong += (nLimit != 12 && nLimit != 14) || (nDigits != 12 && nDigits != 14);
                }
            });
    }
    const std::shared_ptr<ConfigReader> apReaders[] = {
        readerOf("<Formatters><NumericFormatter maxSignificantDigits='12'/></Formatters>"),
        readerOf("<Formatters><NumericFormatter maxSignificantDigits='14'/></Formatters>")};
    for (int i = 0; i < 200; ++i)
    {
        ConfigReader::setGlobalInstance(apReaders[i % 2]);
        apReaders[i % 2]->reload();
    }
    bDone = true;
    for (std::thread& tReader : vReaders)
        tReader.join();
    EXPECT_EQ(nWrong, 0);
}

}  // namespace
}  // namespace tov

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "webbedrock/memoryallocator.h"
#include "webformat/drillvalueformatters.h"
#include "webformat/numericformatter.h"

namespace tov {
namespace {

struct Allocation
{
    std::string sFile;
    int nLine;
    std::size_t nBytes;
};

std::vector<Allocation>* s_pRecord = nullptr;

void* recordingAllocate(std::size_t nBytes, const char* pFile, int nLine)
{
    s_pRecord->push_back({pFile, nLine, nBytes});
    return ::operator new(nBytes);
}

void plainFree(void* pMemory)
{
    ::operator delete(pMemory);
}

// What the gateway is asked for while `tWork` runs. Memory of either pair may be freed by the other.
std::vector<Allocation> allocationsOf(const std::function<void()>& tWork)
{
    std::vector<Allocation> vRecord;
    s_pRecord = &vRecord;
    MemoryAllocatorGateway::setFunctions(&recordingAllocate, &plainFree);
    tWork();
    MemoryAllocatorGateway::setFunctions(nullptr, nullptr);
    s_pRecord = nullptr;
    return vRecord;
}

std::size_t countOf(const std::vector<Allocation>& vRecord, const std::string& sFile)
{
    return std::count_if(vRecord.begin(), vRecord.end(),
                         [&](const Allocation& tAllocation) { return tAllocation.sFile == sFile; });
}

struct Row
{
    int nLine;
    const char* pFile;
    std::function<void()> tWork;
};

const SQLDataType kDouble(SQLDataType::kDouble);
const SQLDataType kBinary(SQLDataType::kBinary);

const Row kRows[] = {
    {__LINE__, "webformat/valueformatter",
     [] { WebValueFormatter::GetCSVFormatter(kBinary, Locale::kUSA, WebValueFormatter::kText); }},
    {__LINE__, "webformat/valueformatter",
     []
     {
         WebValueFormatter::GetDefaultFormatter(kBinary, Locale::kUSA, WebValueFormatter::kText, 0, 0,
                                                KTWUILanguage::kDefaultLanguage);
     }},
    {__LINE__, "webformat/drillvalueformatters",
     [] { WebDrillValueFormatter::GetFormatter(SQLDataType(SQLDataType::kChar), WebValueFormatter::kText); }},
    {__LINE__, "webformat/numericformatterimpl",
     []
     {
         WebValueFormatter::GetCustomFormatter(kDouble, L"#0", Locale::kUSA, WebValueFormatter::kText,
                                               KTWUILanguage::kDefaultLanguage);
     }},
};

TEST(AllocatorRecord, NamesTheUnitAndTheLineOfEveryFormatter)
{
    for (const Row& tRow : kRows)
    {
        tRow.tWork();  // what is made once for the process is there already
        const std::vector<Allocation> vRecord = allocationsOf(tRow.tWork);
        ASSERT_EQ(countOf(vRecord, tRow.pFile), 1u) << "row at line " << tRow.nLine;
        for (const Allocation& tAllocation : vRecord)
        {
            EXPECT_GT(tAllocation.nLine, 0) << "row at line " << tRow.nLine;
            EXPECT_GT(tAllocation.nBytes, 0u) << "row at line " << tRow.nLine;
        }
    }
}

TEST(AllocatorRecord, NamesTheBufferThatGrows)
{
    const WebValueFormatterHandle hFormatter =
        WebDrillValueFormatter::GetFormatter(SQLDataType(SQLDataType::kChar), WebValueFormatter::kText);
    const String sLong(1000, L'x');
    const std::vector<Allocation> vRecord = allocationsOf([&] { hFormatter->formatAsString(sLong.c_str()); });
    ASSERT_EQ(vRecord.size(), 1u);
    EXPECT_EQ(vRecord[0].sFile, "webbedrock/stringbufferbase");
    EXPECT_GT(vRecord[0].nLine, 0);
    EXPECT_EQ(vRecord[0].nBytes, 1024 * sizeof(wchar_t));
}

TEST(AllocatorRecord, IsAskedForNothingWhileValuesAreFormatted)
{
    const WebValueFormatterHandle hFormatter = WebValueFormatter::GetCustomFormatter(
        kDouble, L"#,##0.00", Locale::kUSA, WebValueFormatter::kHTML, KTWUILanguage::kDefaultLanguage);
    const double dValue = 1234.5;
    EXPECT_TRUE(allocationsOf([&] { hFormatter->formatAsString(&dValue); }).empty());
}

}  // namespace
}  // namespace tov

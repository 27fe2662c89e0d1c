#include "utilities/configreader.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "temporarydirectory.h"
#include "webbedrock/utf8.h"

namespace tov {
namespace {

std::shared_ptr<ConfigReader> readerOf(std::string_view sXml)
{
    XmlError tError;
    std::shared_ptr<ConfigReader> pReader = ConfigReader::fromText(sXml, &tError);
    EXPECT_TRUE(pReader) << toUtf8(tError.sMessage);
    return pReader;
}

TEST(ConfigReader, FindsElementsByTheirPathBelowTheRoot)
{
    const std::shared_ptr<ConfigReader> pReader = readerOf(
        "<AnyRoot xmlns='urn:any'><Formatters/><Formatters><NumericFormatter maxSignificantDigits='12'/></Formatters>"
        "<TimeZone><DefaultDataOffset>\n GMT+01:00 </DefaultDataOffset><Logging/></TimeZone></AnyRoot>");
    struct Row
    {
        int nLine;
        const wchar_t* pPath;
        bool bFound;
        const wchar_t* pText;
    };
    constexpr Row kRows[] = {
        {__LINE__, L"Formatters/NumericFormatter", true, L""},  // in the second of two
        {__LINE__, L"TimeZone/DefaultDataOffset", true, L"GMT+01:00"},
        {__LINE__, L"TimeZone", true, L"GMT+01:00"},
        {__LINE__, L"TimeZone/Logging", true, L""},
        {__LINE__, L"TimeZone/DefaultDataDisplay", false, L"default"},
        {__LINE__, L"AnyRoot", false, L"default"},  // the root is no part of the path
        {__LINE__, L"timezone", false, L"default"},
        {__LINE__, L"NumericFormatter", false, L"default"},
        {__LINE__, L"", false, L"default"},
        {__LINE__, L"/TimeZone", false, L"default"},
        {__LINE__, L"TimeZone/", false, L"default"},
        {__LINE__, L"TimeZone//Logging", false, L"default"},
        {__LINE__, L"TimeZone/Logging/Deeper", false, L"default"},
    };
    for (const Row& tRow : kRows)
    {
        EXPECT_EQ(pReader->findElement(PathFilter(tRow.pPath)).has_value(), tRow.bFound)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(pReader->getText(PathFilter(tRow.pPath), L"default"), tRow.pText) << "row at line " << tRow.nLine;
    }
}

TEST(ConfigReader, ReadsIntegersOfAttributesOrTheDefault)
{
    struct Row
    {
        int nLine;
        const char* pAttribute;
        int nExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, "n='20'", 20},
        {__LINE__, "n='15'", 15},
        {__LINE__, "n='-4'", -4},
        {__LINE__, "n=' 20 '", 20},
        {__LINE__, "n='0'", 0},
        {__LINE__, "n='+7'", 7},
        {__LINE__, "n='junk'", 99},
        {__LINE__, "n=''", 99},
        {__LINE__, "n='2147483648'", 99},
        {__LINE__, "n='1e2'", 99},
        {__LINE__, "n='99999999999999999999'", 99},
        {__LINE__, "m='1'", 99},
        {__LINE__, "", 99},
    };
    constexpr PathFilter kPath(L"A/B");
    for (const Row& tRow : kRows)
    {
        const std::shared_ptr<ConfigReader> pReader =
            readerOf(std::string("<r><A><B ") + tRow.pAttribute + "/></A></r>");
        EXPECT_EQ(pReader->getIntAttribute(kPath, L"n", 99), tRow.nExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(pReader->findElement(kPath)->getIntAttribute(L"n", 99), tRow.nExpected)
            << "row at line " << tRow.nLine;
    }
    EXPECT_EQ(readerOf("<r/>")->getIntAttribute(kPath, L"n", 99), 99);
}

TEST(ConfigReader, ReadsTextsAndFlagsOfAttributes)
{
    const std::optional<ConfigElement> tElement =
        readerOf("<r><A on='true' off=' 0 ' name=' x '/></r>")->findElement(PathFilter(L"A"));
    ASSERT_TRUE(tElement);  // and alive although its reader is gone
    EXPECT_TRUE(tElement->getBoolAttribute(L"on", false));
    EXPECT_FALSE(tElement->getBoolAttribute(L"off", true));
    EXPECT_TRUE(tElement->getBoolAttribute(L"name", true));
    EXPECT_EQ(tElement->getAttribute(L"name"), L" x ");
    EXPECT_EQ(tElement->getAttribute(L"none", L"default"), L"default");
}

TEST(ConfigReader, AFileThatIsNoConfigurationIsAnErrorWithItsPlace)
{
    const TemporaryDirectory tDirectory;
    XmlError tError;
    EXPECT_FALSE(ConfigReader::fromFile(tDirectory.pathOf("none.xml"), &tError));
    EXPECT_EQ(tError.sMessage, L"cannot read the file: No such file or directory");
    EXPECT_EQ(tError.nLine, 0);
    EXPECT_FALSE(ConfigReader::fromFile(tDirectory.write("bad.xml", "<r>\n<A></r>"), &tError));
    EXPECT_EQ(tError.nLine, 2);
    EXPECT_FALSE(ConfigReader::fromText("<!DOCTYPE r><r/>", &tError));
    EXPECT_FALSE(ConfigReader::fromText(""));
}

TEST(ConfigReader, AReloadReadsTheFileAgainAndAFailedOneChangesNothing)
{
    const TemporaryDirectory tDirectory;
    const std::shared_ptr<ConfigReader> pReader = ConfigReader::fromFile(tDirectory.write("c.xml", "<r><A>1</A></r>"));
    ASSERT_TRUE(pReader);
    const std::optional<ConfigElement> tOld = pReader->findElement(PathFilter(L"A"));
    tDirectory.write("c.xml", "<r><A>2</A></r>");
    EXPECT_EQ(pReader->getText(PathFilter(L"A")), L"1");
    EXPECT_TRUE(pReader->reload());
    EXPECT_EQ(pReader->getText(PathFilter(L"A")), L"2");
    EXPECT_EQ(tOld->text(), L"1");

    tDirectory.write("c.xml", "<r>\n <A>3</B></r>");
    XmlError tError;
    EXPECT_FALSE(pReader->reload(&tError));
    EXPECT_EQ(tError.nLine, 2);
    EXPECT_EQ(pReader->getText(PathFilter(L"A")), L"2");
    std::filesystem::remove(tDirectory.pathOf("c.xml"));
    EXPECT_FALSE(pReader->reload());
    EXPECT_EQ(pReader->getText(PathFilter(L"A")), L"2");
}

TEST(ConfigReader, ReadersDuringAReloadSeeTheOldOrTheNewContentsWhole)
{
    const TemporaryDirectory tDirectory;
    const std::shared_ptr<ConfigReader> pReader =
        ConfigReader::fromFile(tDirectory.write("c.xml", "<r><A n='0'>0</A></r>"));
    ASSERT_TRUE(pReader);
    std::atomic<bool> bDone{false};
    std::atomic<int> nTorn{0};
    std::vector<std::thread> vThreads;
    for (int i = 0; i < 4; ++i)
    {
        vThreads.emplace_back(
            [&]
            {
                do
                {
                    const std::optional<ConfigElement> tElement = pReader->findElement(PathFilter(L"A"));
                    if (!tElement || tElement->text() != tElement->getAttribute(L"n"))
                        ++nTorn;
                } while (!bDone);
            });
    }
    for (int i = 1; i <= 200; ++i)
    {
        const std::string sValue = std::to_string(i);
        tDirectory.write("c.xml", "<r><A n='" + sValue + "'>" + sValue + "</A></r>");
        EXPECT_TRUE(pReader->reload());
    }
    bDone = true;
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nTorn, 0);
    EXPECT_EQ(pReader->getText(PathFilter(L"A")), L"200");
}

}  // namespace
}  // namespace tov

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/collected.h"
#include "temporarydirectory.h"
#include "utilities/messagefilesregistry.h"
#include "utilities/messagetable.h"
#include "utilities/textmessageformatter.h"
#include "webbedrock/utf8.h"

namespace tov {
namespace {

constexpr const char* kMessages =
    "<messages><language tag=''><message id='hello'>Hello</message></language>"
    "<language tag='de'><message id='hello'>Hallo</message><message id='name'>Name {0}</message></language>"
    "<language tag='de-AT'><message id='hello'>Servus</message></language></messages>";

String filled(std::wstring_view sText, std::initializer_list<std::wstring_view> vArguments)
{
    StringBufferTemplate<wchar_t, 63> tBuffer;
    MessageFormatter::fillPlaces(tBuffer, sText, vArguments);
    return tBuffer.toString();
}

TEST(MessageTable, FallsBackToTheLanguageWithoutItsRegionAndThenToTheDefault)
{
    MessageTable tTable;
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(kMessages);
    ASSERT_TRUE(tDocument && tTable.addFile(*tDocument));
    struct Row
    {
        int nLine;
        const wchar_t* pId;
        const wchar_t* pLanguage;
        const wchar_t* pExpected;  // null: none
    };
    constexpr Row kRows[] = {
        {__LINE__, L"hello", L"de-AT", L"Servus"},     {__LINE__, L"hello", L"DE_at", L"Servus"},
        {__LINE__, L"hello", L"de-AT-x-y", L"Servus"}, {__LINE__, L"hello", L"de-CH", L"Hallo"},
        {__LINE__, L"hello", L"de", L"Hallo"},         {__LINE__, L"hello", L"fr-FR", L"Hello"},
        {__LINE__, L"hello", L"", L"Hello"},           {__LINE__, L"name", L"de-AT", L"Name {0}"},
        {__LINE__, L"name", L"en", nullptr},           {__LINE__, L"Hello", L"de", nullptr},
        {__LINE__, L"hello", L"d", L"Hello"},          {__LINE__, L"hello", L"-", L"Hello"},
    };
    for (const Row& tRow : kRows)
    {
        const String* pText = tTable.findText(tRow.pId, tRow.pLanguage);
        EXPECT_EQ(pText != nullptr, tRow.pExpected != nullptr) << "row at line " << tRow.nLine;
        EXPECT_EQ(pText ? *pText : L"", tRow.pExpected ? tRow.pExpected : L"") << "row at line " << tRow.nLine;
    }
}

TEST(MessageTable, RefusesFilesOfAnotherFormAndTakesNothingOfThem)
{
    struct Row
    {
        int nTestLine;
        const char* pXml;
        const wchar_t* pMessage;
        int nLine;
        int nColumn;
    };
    constexpr Row kRows[] = {
        {__LINE__, "<texts/>", L"found <texts>, expected <messages>", 1, 1},
        {__LINE__, "<messages>\n <text/></messages>", L"found <text>, expected <language>", 2, 2},
        {__LINE__, "<messages><language><message id='a'>1</message>\n<b/></language></messages>",
         L"found <b>, expected <message>", 2, 1},
        {__LINE__, "<messages><language><message>1</message></language></messages>", L"expected the attribute \"id\"",
         1, 21},
        {__LINE__, "<messages><language><message id='a'>1<b/></message></language></messages>", L"expected text", 1,
         38},
    };
    for (const Row& tRow : kRows)
    {
        MessageTable tTable;
        XmlError tError;
        const std::optional<XmlDocument> tDocument = XmlDocument::parse(tRow.pXml);
        ASSERT_TRUE(tDocument) << "row at line " << tRow.nTestLine;
        EXPECT_FALSE(tTable.addFile(*tDocument, &tError)) << "row at line " << tRow.nTestLine;
        EXPECT_NE(tError.sMessage.find(tRow.pMessage), String::npos) << toUtf8(tError.sMessage);
        EXPECT_EQ(tError.nLine, tRow.nLine) << "row at line " << tRow.nTestLine;
        EXPECT_EQ(tError.nColumn, tRow.nColumn) << "row at line " << tRow.nTestLine;
        EXPECT_EQ(tTable.size(), 0u) << "row at line " << tRow.nTestLine;
    }
}

TEST(MessageFormatter, FillsPlacesAndLeavesEverythingElse)
{
    struct Row
    {
        int nLine;
        const wchar_t* pText;
        const wchar_t* pExpected;  // with the arguments "one" and "{0}{1}"
    };
    constexpr Row kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"plain", L"plain"},
        {__LINE__, L"{0}", L"one"},
        {__LINE__, L"<{0}|{1}|{0}>", L"<one|{0}{1}|one>"},  // arguments are no text with places
        {__LINE__, L"{2}", L"{2}"},
        {__LINE__, L"{99}", L"{99}"},
        {__LINE__, L"{00}", L"{00}"},
        {__LINE__, L"{01}", L"{01}"},
        {__LINE__, L"{100}", L"{100}"},
        {__LINE__, L"{18446744073709551616}", L"{18446744073709551616}"},
        {__LINE__, L"{", L"{"},
        {__LINE__, L"{0", L"{0"},
        {__LINE__, L"{}", L"{}"},
        {__LINE__, L"{-1}", L"{-1}"},
        {__LINE__, L"{ 0}", L"{ 0}"},
        {__LINE__, L"{x}", L"{x}"},
        {__LINE__, L"{{0}}", L"{one}"},
        {__LINE__, L"}{0}{", L"}one{"},
        {__LINE__, L"%s%n{0,number}", L"%s%n{0,number}"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(filled(tRow.pText, {L"one", L"{0}{1}"}), tRow.pExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(filled(L"{10}{1}", {L"0", L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9", L"ten"}), L"ten1");
}

TEST(MessageFormatter, TakesTheMessageOfTheLanguageOrTheBuiltInText)
{
    Handle<MessageTable> hTable(WEBFORMAT_NEW("tests/messages") MessageTable);
    hTable->addText(L"de", L"zone/X", L"<{0}>");
    StringBufferTemplate<wchar_t, 63> tBuffer;
    TextMessageFormatter(hTable, L"de-DE").FormatBuffer(tBuffer, L"zone/X", L"{0}", {L"XST"});
    TextMessageFormatter(hTable, L"en-US").FormatBuffer(tBuffer, L"zone/X", L"|{0}|", {L"XST"});
    TextMessageFormatter(nullptr, L"de").FormatBuffer(tBuffer, L"zone/X", L"{0}", {L"{0}"});
    EXPECT_EQ(tBuffer.toString(), L"<XST>|XST|{0}");
}

TEST(MessageFilesRegistry, FindsFilesInTheDirectoriesOfTheHostTheLastOneFirst)
{
    const TemporaryDirectory tFirst;
    const TemporaryDirectory tLast;
    tFirst.write("found.xml", "<messages><language><message id='found'>first</message></language></messages>");
    tLast.write("found.xml", "<messages><language><message id='found'>last</message></language></messages>");
    const std::string sPath =
        tFirst.write("path.xml", "<messages><language><message id='path'>by path</message></language></messages>");
    MessageFilesRegistry& tRegistry = MessageFilesRegistry::getInstance();
    tRegistry.addDirectory(tFirst.path());
    const CollectedLog tLog;
    tRegistry.registerMessageFiles({"found.xml", sPath});
    const MessageTableHandle hBefore = tRegistry.getMessageTable();
    EXPECT_EQ(*hBefore->findText(L"found", L""), L"first");
    EXPECT_EQ(*hBefore->findText(L"path", L"en"), L"by path");
    EXPECT_TRUE(tRegistry.getMessageTable() == hBefore) << "files are read once";
    tRegistry.addDirectory(tLast.path());
    EXPECT_EQ(*tRegistry.getMessageTable()->findText(L"found", L""), L"last");
    EXPECT_EQ(*hBefore->findText(L"found", L""), L"first");
    EXPECT_EQ(tLog.count(), 0u);
}

std::size_t countWarnings(const CollectedLog& tLog, const wchar_t* pPart)
{
    std::size_t nCount = 0;
    for (const CollectedLine& tLine : tLog.all())
        nCount += tLine.eSeverity == Logger::kWarning && tLine.sText.find(pPart) != String::npos;
    return nCount;
}

TEST(MessageFilesRegistry, AMissingOrBrokenFileIsOneWarningAndTheBuiltInTexts)
{
    const TemporaryDirectory tDirectory;
    const std::string sBroken = tDirectory.write("broken.xml", "<messages>\n<language></messages>");
    const std::string sForeign = tDirectory.write("foreign.xml", "<other/>");
    MessageFilesRegistry& tRegistry = MessageFilesRegistry::getInstance();
    const CollectedLog tLog;
    for (int i = 0; i < 3; ++i)
    {
        tRegistry.registerMessageFiles({"no-such-file.xml", sBroken, sForeign});
        EXPECT_EQ(tRegistry.getMessageTable()->findText(L"built-in", L"en"), nullptr);
    }
    EXPECT_EQ(countWarnings(tLog, L"message file no-such-file.xml: not found; the built-in texts are used"), 1u);
    EXPECT_EQ(countWarnings(tLog, L"broken.xml: line 2, column"), 1u);
    EXPECT_EQ(countWarnings(tLog, L"foreign.xml: line 1, column 1: found <other>"), 1u);
}

TEST(MessageFilesRegistry, ManyThreadsShareOneTable)
{
    MessageFilesRegistry& tRegistry = MessageFilesRegistry::getInstance();
    const MessageTableHandle hTable = tRegistry.getMessageTable();
    std::vector<std::thread> vThreads;
    std::atomic<int> nSame{0};
    for (int i = 0; i < 8; ++i)
        vThreads.emplace_back([&] { nSame += tRegistry.getMessageTable() == hTable; });
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nSame, 8);
}

TEST(MessageFiles, TheOneOfTheFormattersIsWellFormedAndSpeaksOfZonesOnly)
{
    XmlError tError;
    const std::optional<XmlDocument> tDocument =
        XmlDocument::parseFile(WEBFORMAT_SOURCE_DIR "/project/webformat/formattermessages.xml", &tError);
    ASSERT_TRUE(tDocument) << toUtf8(tError.sMessage);
    MessageTable tTable;
    ASSERT_TRUE(tTable.addFile(*tDocument, &tError)) << toUtf8(tError.sMessage);
    for (const wchar_t* pLanguage : {L"", L"en", L"de"})
        EXPECT_EQ(*tTable.findText(L"zoneShortName/Etc/UTC", pLanguage), L"UTC");
    for (const XmlElement& tLanguage : tDocument->root().children())
        for (const XmlElement& tMessage : tLanguage.children())
            EXPECT_TRUE(tMessage.getAttributeOr(L"id").starts_with(L"zoneShortName/")) << tMessage.lineNumber();
}

}  // namespace
}  // namespace tov

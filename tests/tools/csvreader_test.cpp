#include "tools/webformat/csvreader.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tov {

namespace {

// The records of one chunk as "line:column=cell|" and "/" behind each.
std::string readRecords(DataChunk& tChunk)
{
    const std::string sName = "t.csv";
    CsvRecords tRecords(tChunk, sName);
    std::string sResult;
    for (std::size_t nCells; (nCells = tRecords.next()) != 0; sResult += "/")
    {
        tChunk.startRows(nCells);
        for (std::size_t nCell = 0; nCell < nCells; ++nCell)
        {
            const DataCell tCell = tChunk.cell(0, nCell);
            sResult += placeInCsv("", tChunk, tChunk.entry(0, nCell).nPlace).text().substr(1) + "=" +
                       (tCell.eKind == DataCell::kNull ? "null" : std::string(tCell.sText)) + "|";
        }
        tChunk.vEntries.clear();
    }
    return sResult;
}

// The records of all chunks, or the message.
std::string read(const std::string& sBytes, std::size_t nChunkBytes = CsvReader::knChunkBytes)
{
    std::istringstream tInput(sBytes);
    std::string sResult;
    try
    {
        CsvReader tReader(tInput, "t.csv", nChunkBytes);
        for (DataChunk tChunk; tReader.read(tChunk);)
            sResult += readRecords(tChunk);
    }
    catch (const InputError& tError)
    {
        return tError.what();
    }
    return sResult;
}

struct Row
{
    int nLine;
    std::string sInput;
    std::string sExpected;
};

}  // namespace

TEST(CsvReader, ReadsCellsWithTheirPlaces)
{
    const Row aRows[] = {
        {__LINE__, "", ""},
        {__LINE__, "a,b\n", "1:1=a|1:3=b|/"},
        {__LINE__, "a,b", "1:1=a|1:3=b|/"},
        {__LINE__, "a\r\nb\r\n", "1:1=a|/2:1=b|/"},
        {__LINE__, "a,\n,b\n", "1:1=a|1:3=null|/2:1=null|2:2=b|/"},
        {__LINE__, "\n", "1:1=null|/"},
        {__LINE__, "a\n\nb", "1:1=a|/2:1=null|/3:1=b|/"},
        {__LINE__, "\"a,b\",c", "1:1=a,b|1:7=c|/"},
        {__LINE__, "\"a \"\"b\"\"\"", "1:1=a \"b\"|/"},
        {__LINE__, "\"\",x", "1:1=null|1:4=x|/"},
        {__LINE__, "\"a\nb\",c\nd", "1:1=a\nb|2:4=c|/3:1=d|/"},
        {__LINE__, "\"a\r\nb\",c", "1:1=a\r\nb|2:4=c|/"},
        {__LINE__,
         "\xEF\xBB\xBF"
         "a,b",
         "1:1=a|1:3=b|/"},
        {__LINE__,
         "a,\xEF\xBB\xBF"
         "b",
         "1:1=a|1:3=\xEF\xBB\xBF"
         "b|/"},
        {__LINE__, "\xC3\xA9\xF0\xA0\xAE\xB7,x", "1:1=\xC3\xA9\xF0\xA0\xAE\xB7|1:4=x|/"},
        {__LINE__, " a , b ", "1:1= a |1:5= b |/"},
    };
    for (const Row& tRow : aRows)
    {
        EXPECT_EQ(read(tRow.sInput), tRow.sExpected) << "row at line " << tRow.nLine;
        // Wherever the file is cut into chunks.
        for (std::size_t nChunkBytes = 1; nChunkBytes < 12; ++nChunkBytes)
            EXPECT_EQ(read(tRow.sInput, nChunkBytes), tRow.sExpected)
                << "row at line " << tRow.nLine << ", chunks of " << nChunkBytes;
    }
}

TEST(CsvReader, NamesThePlaceOfWhatIsWrong)
{
    const Row aRows[] = {
        {__LINE__, "a\nb,c\"d",
         "t.csv:2:4: found a quotation mark inside a cell, expected a cell that holds one to be quoted"},
        {__LINE__, "a,\"b\"c,d",
         "t.csv:1:6: found \"c\", expected a comma or the end of the line behind a closing quotation mark"},
        {__LINE__, "a\n\"b,c\nd",
         "t.csv:2:1: found the end of the file, expected the quotation mark that closes this cell"},
        {__LINE__, "a\rb", "t.csv:1:2: found a carriage return, expected it only in front of a line feed"},
        {__LINE__, "a\nb,\xFF", "t.csv:2:3: found bytes that are not UTF-8"},
        {__LINE__, "a,\xC0\x80", "t.csv:1:3: found bytes that are not UTF-8"},
        {__LINE__, "a,\xED\xA0\x80", "t.csv:1:3: found bytes that are not UTF-8"},
        {__LINE__, "\"a\nb\xC3\nc\"", "t.csv:2: found bytes that are not UTF-8"},
        // Only the first mistake counts, whatever it makes of the quotes behind it.
        {__LINE__, "a\nb\"c\n\"d\ne\"f\"\ng\n",
         "t.csv:2:2: found a quotation mark inside a cell, expected a cell that holds one to be quoted"},
        {__LINE__, "\"a\"\n\"b\"c\"\nd\n\"e\"\n",
         "t.csv:2:4: found \"c\"\", expected a comma or the end of the line behind a closing quotation mark"},
        {__LINE__, std::string("a,b\0c", 5), "t.csv:1:3: found the character U+0000, expected text"},
    };
    for (const Row& tRow : aRows)
    {
        EXPECT_EQ(read(tRow.sInput), tRow.sExpected) << "row at line " << tRow.nLine;
        // Wherever the file is cut into chunks.
        for (std::size_t nChunkBytes = 1; nChunkBytes < 12; ++nChunkBytes)
            EXPECT_EQ(read(tRow.sInput, nChunkBytes), tRow.sExpected)
                << "row at line " << tRow.nLine << ", chunks of " << nChunkBytes;
    }
}

TEST(CsvReader, TakesFewShortRecordsAlongWithALongOne)
{
    std::string sLong = "\"";
    for (int nLine = 0; nLine < 1000; ++nLine)
        sLong += "x\n";
    sLong += "\"\n";
    std::string sShort;
    for (int nLine = 0; nLine < 1000; ++nLine)
        sShort += "y\n";
    std::istringstream tInput(sLong + sShort);
    CsvReader tReader(tInput, "t.csv", 16);
    DataChunk tChunk;
    ASSERT_TRUE(tReader.read(tChunk));
    EXPECT_GE(tChunk.sBytes.size(), sLong.size());
    EXPECT_LE(tChunk.sBytes.size(), sLong.size() + 16);
}

TEST(CsvReader, RefusesRecordsOfTooManyCells)
{
    EXPECT_EQ(read(std::string(16384, ',')),
              "t.csv:1:16385: found more than 16,384 cells in a record, expected the end of the line");
    EXPECT_EQ(read(std::string(16383, ',')).find("t.csv"), std::string::npos);
}

TEST(CsvReader, RefusesCellsAndRecordsOfTooManyBytes)
{
    EXPECT_EQ(read("a," + std::string((std::size_t(64) << 20) + 1, 'x')),
              "t.csv:1:3: found a cell of more than 64 MiB");
    // What the reader hands over when it has found no end of a record for that long.
    for (const char* pRecord : {"a,b", "a,\"b"})
    {
        DataChunk tChunk;
        tChunk.sBytes = pRecord;
        tChunk.bWhole = false;
        try
        {
            readRecords(tChunk);
            ADD_FAILURE() << pRecord;
        }
        catch (const InputError& tError)
        {
            EXPECT_NE(std::string(tError.what()).find("found a record of more than 128 MiB"), std::string::npos);
        }
    }
}

TEST(CsvReader, ReadsCellsThatAreLongerThanItsBuffer)
{
    const std::string sLong(200000, 'x');
    EXPECT_EQ(read("a,\"" + sLong + "\",b"), "1:1=a|1:3=" + sLong + "|1:200006=b|/");
}

}  // namespace tov

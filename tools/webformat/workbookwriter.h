#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "webbedrock/string.h"

struct lxw_format;
struct lxw_workbook;
struct lxw_worksheet;

namespace tov {

// Writes a workbook of one worksheet to a file, row by row from the top and each row from the left; memory does not
// grow with the rows.
//
// The first row holds the headings: bold, and in sight when the rest moves. Text wraps inside its cell. Nothing of the
// place or the time is in the file: the same calls make the same bytes. Errors throw InputError.
class WorkbookWriter
{
public:
    struct Settings
    {
        String sTitle;  // of the document; the worksheet's name is made of it
        bool bRightToLeft = false;
    };

    enum Alignment
    {
        kLeft,
        kRight
    };

    static constexpr std::uint32_t knMostRows = 1048576;  // that of the headings is one of them
    static constexpr std::size_t knMostColumns = 16384;
    static constexpr std::size_t knLongestText = 32767;  // in UTF-16 units
    static constexpr std::size_t knMostPatterns = 200;   // of number formats
    static constexpr std::size_t knWidest = 60;          // of the columns, in characters

    // `sPath` is overwritten. `sName` stands for it in messages.
    WorkbookWriter(const std::string& sPath, const std::string& sName, const Settings& tSettings);
    ~WorkbookWriter();
    WorkbookWriter(const WorkbookWriter&) = delete;
    WorkbookWriter& operator=(const WorkbookWriter&) = delete;

    void writeHeading(std::size_t nColumn, std::wstring_view sText, Alignment eAlignment);
    // False, and nothing is written, for a pattern after the 200th.
    bool writeNumber(std::uint32_t nRow, std::size_t nColumn, double fNumber, std::wstring_view sPattern);
    // A text that is too long is cut and ends in "…"; line ends become line feeds, characters that XML does not have
    // U+FFFD.
    void writeText(std::uint32_t nRow, std::size_t nColumn, std::wstring_view sText, Alignment eAlignment);

    // Makes a row, after its cells, as high as so many lines, up to what a row takes. Rows are one line high without.
    void setLines(std::uint32_t nRow, std::size_t nLines);

    // How many texts were cut.
    std::uint64_t cutTexts() const { return m_nCutTexts; }

    // Completes the file. `vWidths` are the columns' widths in characters.
    void finish(const std::vector<std::size_t>& vWidths);

private:
    lxw_format* addFormat(bool bTop);
    lxw_format* numberFormat(std::wstring_view sPattern);
    void describe(const Settings& tSettings);
    void layOutPages(const String& sTitle);
    std::string cellText(std::wstring_view sText);
    [[noreturn]] void fail(const char* pReason) const;

    std::string m_sName;
    lxw_workbook* m_pWorkbook = nullptr;
    lxw_worksheet* m_pSheet = nullptr;
    lxw_format* m_apHeading[2] = {};
    lxw_format* m_apText[2] = {};
    lxw_format* m_pGeneral = nullptr;
    std::map<String, lxw_format*, std::less<>> m_vNumberFormats;
    std::uint64_t m_nCutTexts = 0;
};

// The name of a worksheet made of a title: at most 31 UTF-16 units, without : \ / ? * [ ] and controls, no apostrophe
// and no blank at its ends, not "History", which is taken; "Report" where nothing is left.
String worksheetName(std::wstring_view sTitle);

}  // namespace tov

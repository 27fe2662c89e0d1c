#include "workbookwriter.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "inputerror.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::size_t knLongestName = 31;
constexpr std::time_t knCreated = 946684800;  // 2000-01-01, so that the same report gives the same bytes
constexpr lxw_color_t knHeadingFill = 0xF1F4F7;
constexpr lxw_color_t knHeadingLine = 0xB8C1CC;
constexpr std::uint8_t knTextFormat = 49;  // "@"
constexpr std::size_t knLongestProperty = 255;
constexpr std::size_t knNarrowest = 6;
constexpr double kfLineHeight = 15;
constexpr double kfHighest = 405;

std::size_t utf16Units(wchar_t nCharacter)
{
    return nCharacter > 0xFFFF ? 2 : 1;
}

// As much of a text as fits into so many UTF-16 units.
std::wstring_view firstUnits(std::wstring_view sText, std::size_t nUnits)
{
    std::size_t nEnd = 0;
    while (nEnd < sText.size() && utf16Units(sText[nEnd]) <= nUnits)
        nUnits -= utf16Units(sText[nEnd++]);
    return sText.substr(0, nEnd);
}

bool isControl(wchar_t nCharacter)
{
    return nCharacter < 0x20 || (nCharacter >= 0x7F && nCharacter < 0xA0) || nCharacter == 0xFFFE ||
           nCharacter == 0xFFFF;
}

String withoutControls(std::wstring_view sText)
{
    String sResult(sText);
    std::replace_if(sResult.begin(), sResult.end(), &isControl, L' ');
    return sResult;
}

std::wstring_view trimmed(std::wstring_view sText)
{
    constexpr std::wstring_view sEnds = L" '";
    const std::size_t nFirst = sText.find_first_not_of(sEnds);
    if (nFirst == std::wstring_view::npos)
        return {};
    return sText.substr(nFirst, sText.find_last_not_of(sEnds) + 1 - nFirst);
}

// Whether a text would be read as the number of a character: "_x0041_" is an A in the strings of a workbook.
bool startsEscape(std::wstring_view sText)
{
    constexpr std::wstring_view sHexDigits = L"0123456789abcdefABCDEF";
    constexpr std::size_t nLength = 7;
    return sText.size() >= nLength && sText.starts_with(L"_x") && sText[nLength - 1] == L'_' &&
           sText.substr(2, 4).find_first_not_of(sHexDigits) == std::wstring_view::npos;
}

// Appends as much of a text as fits into so many UTF-16 units; whether that is all of it. The underscore of what would
// be read as an escape stands as its own number, whose characters count: a cell whose text is longer is left out.
bool appendWithoutEscapes(String& sResult, std::wstring_view sText, std::size_t nUnits)
{
    constexpr std::wstring_view sUnderscore = L"_x005F_";
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
    {
        const bool bEscape = startsEscape(sText.substr(nAt));
        const std::size_t nOwnUnits = bEscape ? sUnderscore.size() : utf16Units(sText[nAt]);
        if (nOwnUnits > nUnits)
            return false;
        nUnits -= nOwnUnits;
        sResult += bEscape ? sUnderscore : sText.substr(nAt, 1);
    }
    return true;
}

// Lines end as a cell has it, and there is no character that a document cannot hold.
String asCellHasIt(std::wstring_view sText)
{
    String sResult;
    sResult.reserve(sText.size());
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
    {
        wchar_t nCharacter = sText[nAt];
        if (nCharacter == L'\r')
        {
            if (nAt + 1 < sText.size() && sText[nAt + 1] == L'\n')
                continue;
            nCharacter = L'\n';
        }
        if (nCharacter == 0xFFFE || nCharacter == 0xFFFF)
            nCharacter = 0xFFFD;
        sResult += nCharacter;
    }
    return sResult;
}

// In headers and footers of pages "&" starts a field.
std::string asPageText(std::wstring_view sText)
{
    String sResult;
    for (const wchar_t nCharacter : sText)
        sResult.append(nCharacter == L'&' ? 2 : 1, nCharacter);
    return toUtf8(sResult);
}

}  // namespace

String worksheetName(std::wstring_view sTitle)
{
    String sName = withoutControls(sTitle);
    for (wchar_t& nCharacter : sName)
        if (std::wstring_view(L":\\/?*[]").find(nCharacter) != std::wstring_view::npos)
            nCharacter = L'-';
    sName = trimmed(firstUnits(trimmed(sName), knLongestName));
    const bool bTaken = sName.size() == 7 && (sName[0] | 0x20) == L'h' && sName.substr(1) == L"istory";
    return sName.empty() || bTaken ? L"Report" : sName;
}

WorkbookWriter::WorkbookWriter(const std::string& sPath, const std::string& sName, const Settings& tSettings)
    : m_sName(sName)
{
    lxw_workbook_options tOptions = {};
    tOptions.constant_memory = LXW_TRUE;
    m_pWorkbook = workbook_new_opt(sPath.c_str(), &tOptions);
    if (m_pWorkbook)
        m_pSheet = workbook_add_worksheet(m_pWorkbook, toUtf8(worksheetName(tSettings.sTitle)).c_str());
    if (!m_pSheet)
        fail("there is no memory or no place for temporary files");
    describe(tSettings);
    for (const Alignment eAlignment : {kLeft, kRight})
    {
        const std::uint8_t nAlignment = eAlignment == kLeft ? LXW_ALIGN_LEFT : LXW_ALIGN_RIGHT;
        lxw_format* pHeading = addFormat(false);
        format_set_bold(pHeading);
        format_set_bg_color(pHeading, knHeadingFill);
        format_set_bottom(pHeading, LXW_BORDER_THIN);
        format_set_bottom_color(pHeading, knHeadingLine);
        format_set_align(pHeading, nAlignment);
        format_set_text_wrap(pHeading);
        m_apHeading[eAlignment] = pHeading;
        lxw_format* pText = addFormat(true);
        format_set_num_format_index(pText, knTextFormat);
        format_set_align(pText, nAlignment);
        if (eAlignment == kLeft)
        {
            // A number at the end of the column before would touch the text.
            format_set_indent(pHeading, 1);
            format_set_indent(pText, 1);
            format_set_text_wrap(pText);
        }
        m_apText[eAlignment] = pText;
    }
    m_pGeneral = addFormat(true);
}

WorkbookWriter::~WorkbookWriter()
{
    if (m_pWorkbook)
        lxw_workbook_free(m_pWorkbook);
}

void WorkbookWriter::fail(const char* pReason) const
{
    throw InputError({m_sName}, std::string("cannot be written: ") + pReason);
}

lxw_format* WorkbookWriter::addFormat(bool bTop)
{
    lxw_format* pFormat = workbook_add_format(m_pWorkbook);
    if (!pFormat)
        fail("there is no memory");
    format_set_align(pFormat, bTop ? LXW_ALIGN_VERTICAL_TOP : LXW_ALIGN_VERTICAL_BOTTOM);
    return pFormat;
}

void WorkbookWriter::describe(const Settings& tSettings)
{
    std::string sTitle = toUtf8(firstUnits(withoutControls(tSettings.sTitle), knLongestProperty));
    lxw_doc_properties tProperties = {};
    tProperties.title = sTitle.data();
    tProperties.created = knCreated;
    workbook_set_properties(m_pWorkbook, &tProperties);
    worksheet_freeze_panes(m_pSheet, 1, 0);
    if (tSettings.bRightToLeft)
        worksheet_right_to_left(m_pSheet);
    layOutPages(tSettings.sTitle);
}

// On paper: all columns on a page's width, the headings on each page, the title above and the page's number below.
void WorkbookWriter::layOutPages(const String& sTitle)
{
    constexpr std::size_t nLongestTitle = 100;
    worksheet_set_landscape(m_pSheet);
    worksheet_fit_to_pages(m_pSheet, 1, 0);
    worksheet_repeat_rows(m_pSheet, 0, 0);
    worksheet_set_header(m_pSheet, ("&C" + asPageText(firstUnits(withoutControls(sTitle), nLongestTitle))).c_str());
    worksheet_set_footer(m_pSheet, "&C&P / &N");
}

std::string WorkbookWriter::cellText(std::wstring_view sText)
{
    const String sCell = asCellHasIt(sText);
    String sWritten;
    if (appendWithoutEscapes(sWritten, sCell, knLongestText))
        return toUtf8(sWritten);
    ++m_nCutTexts;
    sWritten.clear();
    appendWithoutEscapes(sWritten, sCell, knLongestText - 1);
    return toUtf8(sWritten + L'\u2026');
}

void WorkbookWriter::writeHeading(std::size_t nColumn, std::wstring_view sText, Alignment eAlignment)
{
    worksheet_write_string(m_pSheet, 0, static_cast<lxw_col_t>(nColumn), cellText(sText).c_str(),
                           m_apHeading[eAlignment]);
}

lxw_format* WorkbookWriter::numberFormat(std::wstring_view sPattern)
{
    if (sPattern.empty())
        return m_pGeneral;
    const auto tFound = m_vNumberFormats.find(sPattern);
    if (tFound != m_vNumberFormats.end())
        return tFound->second;
    if (m_vNumberFormats.size() >= knMostPatterns)
        return nullptr;
    lxw_format* pFormat = addFormat(true);
    format_set_num_format(pFormat, toUtf8(sPattern).c_str());
    m_vNumberFormats.emplace(sPattern, pFormat);
    return pFormat;
}

bool WorkbookWriter::writeNumber(std::uint32_t nRow, std::size_t nColumn, double fNumber, std::wstring_view sPattern)
{
    lxw_format* pFormat = numberFormat(sPattern);
    if (!pFormat)
        return false;
    worksheet_write_number(m_pSheet, nRow, static_cast<lxw_col_t>(nColumn), fNumber, pFormat);
    return true;
}

void WorkbookWriter::writeText(std::uint32_t nRow, std::size_t nColumn, std::wstring_view sText, Alignment eAlignment)
{
    worksheet_write_string(m_pSheet, nRow, static_cast<lxw_col_t>(nColumn), cellText(sText).c_str(),
                           m_apText[eAlignment]);
}

void WorkbookWriter::setLines(std::uint32_t nRow, std::size_t nLines)
{
    worksheet_set_row(m_pSheet, nRow, std::min(static_cast<double>(nLines) * kfLineHeight, kfHighest), nullptr);
}

void WorkbookWriter::finish(const std::vector<std::size_t>& vWidths)
{
    constexpr double fPadding = 2;
    for (std::size_t nColumn = 0; nColumn < vWidths.size(); ++nColumn)
    {
        const std::size_t nWidth = std::clamp(vWidths[nColumn], knNarrowest, knWidest);
        const lxw_col_t nPlace = static_cast<lxw_col_t>(nColumn);
        worksheet_set_column(m_pSheet, nPlace, nPlace, static_cast<double>(nWidth) + fPadding, nullptr);
    }
    worksheet_ignore_errors(m_pSheet, LXW_IGNORE_NUMBER_STORED_AS_TEXT, "A1:XFD1048576");
    const bool bFull = m_pSheet->optimize_tmpfile &&
                       (std::fflush(m_pSheet->optimize_tmpfile) != 0 || std::ferror(m_pSheet->optimize_tmpfile));
    if (bFull)
        fail("the place for temporary files is full");
    // Frees the workbook, whatever it returns.
    const lxw_error eError = workbook_close(std::exchange(m_pWorkbook, nullptr));
    if (eError != LXW_NO_ERROR)
        fail(lxw_strerror(eError));
}

}  // namespace tov

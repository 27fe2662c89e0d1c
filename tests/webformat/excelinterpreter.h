#pragma once

#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// Shows numbers under Excel number formats, as Excel does: a second opinion on the patterns that the library makes,
// written without a look at how it makes them. Knows sections for positive and negative numbers, "#" and "0", grouping
// and scaling commas, percent signs, quoted and escaped text, [$symbol] and [red]; separators are those of en-US.
class ExcelInterpreter
{
public:
    explicit ExcelInterpreter(const String& sPattern) { split(sPattern); }

    String show(double fValue) const
    {
        const bool bNegative = fValue < 0;
        if (bNegative && m_vSections.size() > 1)
            return showIn(m_vSections[1], -fValue);
        return (bNegative ? L"-" : L"") + showIn(m_vSections[0], std::fabs(fValue));
    }

private:
    struct Piece
    {
        wchar_t nKind;  // # 0 , . % or L'"' for text
        String sText;
    };
    using Section = std::vector<Piece>;

    void split(const String& sPattern)
    {
        m_vSections.emplace_back();
        for (std::size_t nAt = 0; nAt < sPattern.size(); ++nAt)
        {
            const wchar_t nChar = sPattern[nAt];
            if (nChar == L'"')
            {
                const std::size_t nEnd = sPattern.find(L'"', nAt + 1);
                text(sPattern.substr(nAt + 1, nEnd - nAt - 1));
                nAt = nEnd;
            }
            else if (nChar == L'[')
            {
                const std::size_t nEnd = sPattern.find(L']', nAt);
                if (sPattern[nAt + 1] == L'$')
                    text(sPattern.substr(nAt + 2, nEnd - nAt - 2));
                nAt = nEnd;
            }
            else if (nChar == L'\\')
                text(String(1, sPattern[++nAt]));
            else if (nChar == L';')
                m_vSections.emplace_back();
            else if (String(L"#0,.%").find(nChar) != String::npos)
                m_vSections.back().push_back({nChar, String()});
            else
                text(String(1, nChar));
        }
    }

    void text(const String& sText) { m_vSections.back().push_back({L'"', sText}); }

    static bool isDigit(const Piece& tPiece) { return tPiece.nKind == L'#' || tPiece.nKind == L'0'; }

    // A comma with digits on both sides groups, one behind the last digit divides by a thousand.
    static String showIn(const Section& tSection, double fValue)
    {
        int nInteger = 0;
        int nFraction = 0;
        bool bPoint = false;
        bool bGroup = false;
        int nPendingCommas = 0;
        for (const Piece& tPiece : tSection)
        {
            if (isDigit(tPiece))
            {
                bGroup = bGroup || (nPendingCommas > 0 && !bPoint);
                nPendingCommas = 0;
                ++(bPoint ? nFraction : nInteger);
            }
            else if (tPiece.nKind == L',')
                ++nPendingCommas;
            else if (tPiece.nKind == L'.')
                bPoint = true;
            else if (tPiece.nKind == L'%')
                fValue *= 100;
        }
        fValue /= std::pow(1000.0, nPendingCommas);
        return layOut(tSection, digitsOf(fValue, nFraction), nInteger, nFraction, bGroup);
    }

    // Fifteen significant digits, then the fraction's; without leading zeros in the integer part.
    static String digitsOf(double fValue, int nFraction)
    {
        char aFifteen[64];
        std::snprintf(aFifteen, sizeof aFifteen, "%.14e", fValue);
        char aDigits[400];
        std::snprintf(aDigits, sizeof aDigits, "%.*Lf", nFraction, std::strtold(aFifteen, nullptr));
        String sDigits;
        for (const char* pChar = aDigits; *pChar; ++pChar)
        {
            if (*pChar != '.')
                sDigits += static_cast<wchar_t>(*pChar);
        }
        const std::size_t nFirst = sDigits.find_first_not_of(L'0');
        const std::size_t nZeros = std::min(nFirst, sDigits.size() - static_cast<std::size_t>(nFraction));
        return sDigits.substr(nZeros);
    }

    static String layOut(const Section& tSection, const String& sDigits, int nInteger, int nFraction, bool bGroup)
    {
        const int nIntegerDigits = static_cast<int>(sDigits.size()) - nFraction;
        int nShown = nFraction;
        const String sFraction = sDigits.substr(static_cast<std::size_t>(nIntegerDigits));
        while (nShown > 0 && sFraction[static_cast<std::size_t>(nShown - 1)] == L'0')
            --nShown;
        String sResult;
        bool bPoint = false;
        bool bFirst = true;
        int nPlace = nInteger;  // places from the point, counted down
        int nFractionPlace = 0;
        bool bStarted = false;
        const auto putInteger = [&](int nAtPlace, bool bForced)
        {
            if (nAtPlace <= nIntegerDigits || bForced || bStarted)
            {
                bStarted = true;
                sResult +=
                    nAtPlace <= nIntegerDigits ? sDigits[static_cast<std::size_t>(nIntegerDigits - nAtPlace)] : L'0';
                if (bGroup && nAtPlace > 1 && (nAtPlace - 1) % 3 == 0)
                    sResult += L',';
            }
        };
        for (const Piece& tPiece : tSection)
        {
            if (tPiece.nKind == L'"')
                sResult += tPiece.sText;
            else if (tPiece.nKind == L'%' || tPiece.nKind == L'.')
            {
                sResult += tPiece.nKind;
                bPoint = bPoint || tPiece.nKind == L'.';
            }
            else if (isDigit(tPiece) && !bPoint)
            {
                for (int nHigh = nIntegerDigits; bFirst && nHigh > nPlace; --nHigh)
                    putInteger(nHigh, false);
                bFirst = false;
                putInteger(nPlace--, tPiece.nKind == L'0');
            }
            else if (isDigit(tPiece))
            {
                if (nFractionPlace < nShown || tPiece.nKind == L'0')
                    sResult += sFraction[static_cast<std::size_t>(nFractionPlace)];
                ++nFractionPlace;
            }
        }
        return sResult;
    }

    std::vector<Section> m_vSections;
};

}  // namespace tov

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "webbedrock/assertion.h"
#include "xml/xmlelement.h"

namespace tov {

// One name of an enumerator.
template <class Enum>
struct EnumName
{
    Enum eValue;
    const wchar_t* pName;
};

// The names that an enumeration has in XML, looked up both ways: by name with a binary search, case counts.
//
// An enumerator may have several rows: it is written under the name of its first one and read under all of them, so
// that older spellings stand behind the current ones. Tables are constants, sorted when they are compiled.
//
// Example: constexpr EnumNames<Colour, 3> kNames({{kGrey, L"grey"}, {kBlue, L"blue"}, {kGrey, L"gray"}});
//     kNames.valueOf(L"gray") -> kGrey;  kNames.nameOf(kGrey) -> "grey"
template <class Enum, std::size_t nRows>
class EnumNames
{
public:
    consteval explicit EnumNames(const EnumName<Enum> (&aRows)[nRows])
        : m_aRows(std::to_array(aRows)), m_aByName(m_aRows)
    {
        std::sort(m_aByName.begin(), m_aByName.end(),
                  [](const EnumName<Enum>& tLeft, const EnumName<Enum>& tRight)
                  { return std::wstring_view(tLeft.pName) < tRight.pName; });
    }

    std::optional<Enum> valueOf(std::wstring_view sName) const
    {
        const auto tRow = std::lower_bound(m_aByName.begin(), m_aByName.end(), sName,
                                           [](const EnumName<Enum>& tLeft, std::wstring_view sRight)
                                           { return tLeft.pName < sRight; });
        if (tRow == m_aByName.end() || tRow->pName != sName)
            return std::nullopt;
        return tRow->eValue;
    }

    // L"" for a value without a name.
    const wchar_t* nameOf(Enum eValue) const
    {
        const auto tRow = std::find_if(m_aRows.begin(), m_aRows.end(),
                                       [=](const EnumName<Enum>& tName) { return tName.eValue == eValue; });
        return tRow == m_aRows.end() ? L"" : tRow->pName;
    }

    // Writes the name of `eValue` as an attribute. A value without a name raises the assertion
    // "!(i == m_mEnumKeyedMap.end())" for the source unit `pSource` and writes nothing.
    void writeAttribute(XmlElement& tElement, std::wstring_view sAttribute, Enum eValue, const char* pSource) const
    {
        const wchar_t* const pName = nameOf(eValue);
        if (*pName == L'\0')
            Assertion::handleFailure("!(i == m_mEnumKeyedMap.end())", pSource, __LINE__);
        else
            tElement.setAttribute(sAttribute, pName);
    }

private:
    std::array<EnumName<Enum>, nRows> m_aRows;
    std::array<EnumName<Enum>, nRows> m_aByName;
};

template <class Enum, std::size_t nRows>
EnumNames(const EnumName<Enum> (&)[nRows]) -> EnumNames<Enum, nRows>;

}  // namespace tov

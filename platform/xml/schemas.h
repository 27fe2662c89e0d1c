#pragma once

#include <string_view>

#include "xml/xmlelement.h"

// The names of the XML that the library reads and writes.
namespace tov::schemas {

struct Report
{
    static constexpr const wchar_t* kTovNamespace = L"urn:tov:schemas:report:v1";
    static constexpr const wchar_t* kTovPrefixName = L"tov";
    static constexpr XmlQualifiedName kqnReport = {kTovNamespace, L"report"};
    static constexpr XmlQualifiedName kqnColumn = {kTovNamespace, L"column"};
    static constexpr XmlQualifiedName kqnDataFormat = {kTovNamespace, L"dataFormat"};
    static constexpr XmlQualifiedName kqnCurrencyTagColumn = {kTovNamespace, L"currencyTagColumn"};
};

struct Expression
{
    static constexpr const wchar_t* kTovxNamespace = L"urn:tov:schemas:expression:v1";
    static constexpr const wchar_t* kTovxPrefixName = L"tovx";
    static constexpr XmlQualifiedName kqnExpr = {kTovxNamespace, L"expr"};
    static constexpr XmlQualifiedName kqnSqlExpression = {kTovxNamespace, L"sqlExpression"};  // an xsi:type
};

struct Instance
{
    static constexpr const wchar_t* kXsiNamespace = L"http://www.w3.org/2001/XMLSchema-instance";
    static constexpr const wchar_t* kXsiPrefixName = L"xsi";
    static constexpr const wchar_t* kType = L"type";
};

// The prefix that a namespace usually has (tov, tovx, xsi), or null.
const wchar_t* usualPrefix(std::wstring_view sNamespace);

}  // namespace tov::schemas

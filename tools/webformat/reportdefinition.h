#pragma once

#include <optional>
#include <string>
#include <vector>

#include "corefacade/sqldatatype.h"
#include "inputerror.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "webbedrock/string.h"
#include "webformat/timezoneresolver.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

class XmlElement;

// A column of a report: where its values come from and how they are shown.
struct ReportColumn
{
    String sName;     // the name of the data's column
    String sHeading;  // what stands above it
    SQLDataType tType = SQLDataType(SQLDataType::kVarChar);
    WebValueFormatDefinitionHandle hDefinition;  // null: the type's default
    // The column of the data that holds each row's currency tag, where the format is a currency by row.
    std::optional<String> sTagColumn;
    InputPlace tPlace;        // of the column element
    InputPlace tFormatPlace;  // of the dataFormat element, where there is one
};

// What a report file says.
//
//     <tov:report xmlns:tov="urn:tov:schemas:report:v1" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
//                 locale="en-US" language="en-us" title="Orders">
//       <tov:column name="amount" heading="Amount" type="double">
//         <tov:dataFormat xsi:type="tov:number" commas="true" negativeType="redParen"/>
//       </tov:column>
//     </tov:report>
//
// `dataOffset` (minutes east of UTC, or "unknown") says how timestamps are stored and `displayTimeZone` where they are
// shown, unless a column's own format names a zone; without either they are shown as they are stored, or as the host's
// configuration says.
//
// A currency by row names the column of the data that holds the rows' currency tags, as it is or between double quotes:
// `<tov:currencyTagColumn><tovx:expr xsi:type="tovx:sqlExpression">currency</tovx:expr></tov:currencyTagColumn>` in a
// data format of the type conditionalcurrency, or the custom format "[$:currencyTagColumn=currency]". Rows whose tag is
// null or unknown are shown without a currency.
//
// `locale` is en-US and `language` en-us unless given, the title may be empty; `name` and `type` of a column are
// required, its heading is its name unless given. The same data may stand in several columns.
struct ReportDefinition
{
    Locale tLocale;
    KTWUILanguage tLanguage;
    String sTitle;
    TimeZoneResolver tResolver;
    std::vector<ReportColumn> vColumns;
};

// Reads a report file. Throws InputError with the file, the line and the column of what is wrong: XML that is not
// well-formed, elements and attributes that are not known there, unknown types, locales and names of settings, numbers
// that are none. The settings of data formats are checked more strictly than the library does, which would take a
// default instead.
ReportDefinition readReportDefinition(const std::string& sPath);

// Reads the XML text of one data-format element, whose prefixes tov, tovx and xsi need not be declared. With the same
// checks; `sName` stands for the file in messages.
WebValueFormatDefinitionHandle readStrictDefinition(const std::string& sXml, const Locale& tLocale,
                                                    const std::string& sName);

// The type in which a column's values are held: the type with its own storage, but decimals for 64-bit integers, which
// the display formatters do not serve.
SQLDataType columnType(SQLDataType tType);

}  // namespace tov

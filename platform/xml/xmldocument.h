#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "xml/xmlelement.h"

namespace tov {

// Why a text is no document, and where: `nLine` and `nColumn` from 1, columns counted in characters; both 0 where the
// error has no place in a text.
struct XmlError
{
    String sMessage;
    int nLine = 0;
    int nColumn = 0;
};

struct XmlParseOptions
{
    // Prefixes that count as declared on the root element where it does not declare them itself.
    std::vector<XmlPrefix> vPredeclared;

    // The prefixes tov, tovx and xsi, which a fragment of a report need not declare.
    static WEBFORMAT_EXPORT const XmlParseOptions& reportFragment();
};

// A parsed XML document: the owner of a tree of elements.
//
// Example:
//     XmlError tError;
//     if (std::optional<XmlDocument> tDocument = XmlDocument::parse("<a b='1'/>", &tError))
//         tDocument->root().getIntAttribute(L"b", 0) -> 1
//
// Documents come from outside and are read with limits: at most 1,048,576 bytes; elements nested at most 256 deep (the
// root counts); at most 1,000 attributes and prefix declarations together on an element, and 1,000 prefix declarations
// in scope at once. A document type declaration is refused, so that there are no entities but the five; nothing is ever
// fetched. The text is UTF-8, with or without a byte order mark; any other declared encoding is an error.
// Every `xsi:type` is checked: a prefix in it that is not declared where it stands is an error.
// Comments and processing instructions are dropped.
//
// Time and memory are linear in the size of the text. Any number of threads may parse at the same time.
class WEBFORMAT_EXPORT XmlDocument
{
public:
    static constexpr std::size_t knMaxBytes = 1024 * 1024;
    static constexpr int knMaxDepth = 256;
    static constexpr std::size_t knMaxAttributes = 1000;

    using ParseOptions = XmlParseOptions;

    explicit XmlDocument(std::unique_ptr<XmlElement> pRoot) : m_pRoot(std::move(pRoot)) {}

    // The document, or no value and in `*pError`, where given, the first error. Nothing is logged or printed.
    static std::optional<XmlDocument> parse(std::string_view sUtf8Bytes, XmlError* pError = nullptr,
                                            const ParseOptions& tOptions = {});

    // Reads a file; an unreadable one is an error without a place. Never reads more than the limit and one byte.
    static std::optional<XmlDocument> parseFile(const std::string& sPath, XmlError* pError = nullptr,
                                                const ParseOptions& tOptions = {});

    // The element with its contents as well-formed UTF-8, without an XML declaration. Prefixes that are declared are
    // kept, those of the report, expression and instance namespaces are tov, tovx and xsi, others are made up. Prefixes
    // that were in scope above the element are declared on it where it uses them. Characters that XML does not allow
    // become U+FFFD. Attributes stand in the order in which they were set. A name that is no XML name raises the
    // assertion "bIsName" (source xml/xmlwriter) and is written as "_".
    //
    // Example: an element {"", "a"} with b = L"x<y" -> "<a b=\"x&lt;y\"/>"
    static std::string serialize(const XmlElement& tElement);

    XmlElement& root() { return *m_pRoot; }
    const XmlElement& root() const { return *m_pRoot; }

private:
    std::unique_ptr<XmlElement> m_pRoot;
};

}  // namespace tov

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "xml/xmldocument.h"

namespace tov {

// What the tags of a document tell before it is parsed.
struct XmlScan
{
    std::vector<XmlPlace> vElements;    // of each element's "<", in the order of the document
    std::vector<XmlPlace> vAttributes;  // of each attribute's value, prefix declarations left out, in that order
    std::vector<std::string> vRootDeclarations;  // "xmlns", "xmlns:a": attributes of the root that declare prefixes
    std::size_t nRootNameEnd = 0;                // byte offset behind the root's name; 0 where there is no root
};

// Looks over the bytes of a document (without a byte order mark) in one linear pass and refuses those that are not
// worth parsing: past the limits of XmlDocument, not UTF-8, with characters that XML does not allow, with a document
// type declaration, or with markup that does not end or is no tag.
//
// What passes need not be well-formed; but a parser that stops at its first error never meets more
// attributes, declarations or depth than were counted here. False and the error, where refused.
bool scanXml(std::string_view sBytes, XmlScan& tScan, XmlError& tError);

// The place of the byte at `nOffset`. Lines end at LF, CR LF or CR.
XmlPlace xmlPlaceOf(std::string_view sBytes, std::size_t nOffset);

}  // namespace tov

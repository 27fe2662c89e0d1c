#pragma once

#include <memory>
#include <string_view>

#include "xml/xmldocument.h"
#include "xml/xmlscanner.h"

namespace tov {

// Parses bytes that `scanXml` let through; null and the error where they are no document.
std::unique_ptr<XmlElement> parseScannedXml(std::string_view sBytes, const XmlScan& tScan,
                                            const XmlParseOptions& tOptions, XmlError& tError);

}  // namespace tov

#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <utility>

#include "webbedrock/export.h"
#include "webbedrock/handle.h"
#include "webbedrock/refcounted.h"
#include "webbedrock/string.h"
#include "xml/xmldocument.h"

namespace tov {

// Texts by message id and language.
//
// Example, after addText(L"de", L"hello", L"Hallo") and addText(L"", L"hello", L"Hello"):
//     findText(L"hello", L"de-AT") -> "Hallo", findText(L"hello", L"fr") -> "Hello", findText(L"bye", L"de") -> null
//
// Ids are compared exactly; language tags without regard to case, "_" as "-". Filled by one thread, then shared and
// read by any number.
class WEBFORMAT_EXPORT MessageTable : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    MessageTable() = default;
    ~MessageTable() override;

    // The text in the language, else in the language without its last subtag and so on, else in the default language
    // (tag
    // ""); null where there is none. Lives as long as the table.
    const String* findText(std::wstring_view sId, std::wstring_view sLanguageTag) const;

    // Adds a text or replaces the one that was there.
    void addText(std::wstring_view sLanguageTag, std::wstring_view sId, std::wstring_view sText);

    // Adds all texts of a message file:
    //     <messages>
    //       <language tag="de"> <message id="hello">Hallo</message> ... </language>
    //       ...
    //     </messages>
    // The tag "" or none is the default language. Namespaces do not matter. Any other element, a message without an id,
    // or a message with elements inside is an error with its place; then nothing is added.
    bool addFile(const XmlDocument& tDocument, XmlError* pError = nullptr);

    std::size_t size() const { return m_tTexts.size(); }

private:
    std::map<std::pair<String, String>, String> m_tTexts;  // by (language in lower case, id)
};

using MessageTableHandle = Handle<const MessageTable, const MessageTable>;

}  // namespace tov

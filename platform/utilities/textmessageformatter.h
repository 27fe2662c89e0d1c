#pragma once

#include <initializer_list>
#include <string_view>

#include "utilities/messagetable.h"
#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// Writes a message with its places filled.
//
// The places of a message's text are "{0}" to "{99}"; a place for which there is no argument, and any other use of
// braces, stays as it is written. Arguments are copied, never looked at for places. Time is linear in the result.
class WEBFORMAT_EXPORT MessageFormatter
{
public:
    virtual ~MessageFormatter();

    // Appends the text of message `sId`, or `sBuiltIn` where the table has none, with its places filled.
    virtual void FormatBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, std::wstring_view sId,
                              std::wstring_view sBuiltIn,
                              std::initializer_list<std::wstring_view> vArguments) const = 0;

    // Appends a text with its places filled: (L"{0} of {1}", {L"3", L"4"}) -> "3 of 4".
    static void fillPlaces(StringBufferBaseTemplate<wchar_t>& tBuffer, std::wstring_view sText,
                           std::initializer_list<std::wstring_view> vArguments);
};

// Takes the texts from a message table in one language; a null table has none.
//
// Example, a zone's short name that the message file may override:
//     TextMessageFormatter(hTable, L"de").FormatBuffer(tBuffer, L"zoneShortName/Europe/Berlin", L"{0}", {sShortName});
class WEBFORMAT_EXPORT TextMessageFormatter final : public MessageFormatter
{
public:
    TextMessageFormatter(MessageTableHandle hTable, std::wstring_view sLanguageTag);
    ~TextMessageFormatter() override;

    void FormatBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, std::wstring_view sId, std::wstring_view sBuiltIn,
                      std::initializer_list<std::wstring_view> vArguments) const override;

private:
    MessageTableHandle m_hTable;
    String m_sLanguageTag;
};

}  // namespace tov

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

// A stream of bytes in the binary form of definitions: numbers are little-endian, a bool is one byte (0 or 1).
class WEBFORMAT_EXPORT OutputStream
{
public:
    // The longest text that writeString takes, in bytes of UTF-8.
    static constexpr std::uint32_t knStringLimit = 0xFF000000;

    virtual ~OutputStream();

    virtual void write(const void* pBytes, std::size_t nBytes) = 0;

    void writeByte(std::uint8_t nByte);
    void writeBool(bool bValue);
    void writeUInt32(std::uint32_t nValue);

    // A 4-byte count of UTF-8 bytes, then the bytes. A text of more than `nLimit` bytes raises the assertion
    // "nBytes <= nLimit" (source webbedrock/outputstream) and is written as an empty one.
    void writeString(std::wstring_view sText, std::uint32_t nLimit = knStringLimit);
};

// Collects the bytes in memory.
class WEBFORMAT_EXPORT MemoryOutputStream : public OutputStream
{
public:
    ~MemoryOutputStream() override;
    void write(const void* pBytes, std::size_t nBytes) override;
    const std::string& bytes() const { return m_sBytes; }

private:
    std::string m_sBytes;
};

// A stream of text to which formatters write values (`WebValueFormatter::FormatToStream`).
class WEBFORMAT_EXPORT WebOutputStream
{
public:
    virtual ~WebOutputStream();

    // Takes `nLength` characters from `pStart` up to `pEnd`; a terminator stands at `pEnd`. The text is valid during
    // the call only.
    virtual void write(const wchar_t* pStart, std::size_t nLength, const wchar_t* pEnd) = 0;
};

}  // namespace tov

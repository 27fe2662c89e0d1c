#include "webbedrock/outputstream.h"

#include "webbedrock/assertion.h"
#include "webbedrock/utf8.h"

namespace tov {

OutputStream::~OutputStream() = default;
MemoryOutputStream::~MemoryOutputStream() = default;
WebOutputStream::~WebOutputStream() = default;

void OutputStream::writeByte(std::uint8_t nByte)
{
    write(&nByte, 1);
}

void OutputStream::writeBool(bool bValue)
{
    writeByte(bValue ? 1 : 0);
}

void OutputStream::writeUInt32(std::uint32_t nValue)
{
    for (int nShift = 0; nShift < 32; nShift += 8)
        writeByte(static_cast<std::uint8_t>(nValue >> nShift));
}

void OutputStream::writeString(std::wstring_view sText, std::uint32_t nLimit)
{
    std::string sBytes = toUtf8(sText);
    const std::size_t nBytes = sBytes.size();
    WEBFORMAT_ASSERT("webbedrock/outputstream", nBytes <= nLimit);
    if (nBytes > nLimit)
        sBytes.clear();
    writeUInt32(static_cast<std::uint32_t>(sBytes.size()));
    write(sBytes.data(), sBytes.size());
}

void MemoryOutputStream::write(const void* pBytes, std::size_t nBytes)
{
    m_sBytes.append(static_cast<const char*>(pBytes), nBytes);
}

}  // namespace tov

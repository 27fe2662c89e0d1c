#include <charconv>
#include <cstring>

#include "project/webformat/dateprogram.h"
#include "webbedrock/assertion.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/dateformatterimpl";

using Buffer = StringBufferBaseTemplate<wchar_t>;
using Step = DateProgram::Step;

constexpr std::uint32_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::uint32_t kPowersOfTen[] = {1,       10,        100,        1'000,       10'000,
                                          100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};
constexpr unsigned kNanosecondDigits = 9;

// The significant digits within which a second and its nanoseconds lose nothing on their way through a double.
constexpr int kFewestExactDigits = 12;
constexpr int kMostExactDigits = 15;

// The last two digits of each byte; one more character, so that two may be read from the last one on.
struct DigitPairs
{
    constexpr DigitPairs()
    {
        for (unsigned n = 0; n < 256; ++n)
        {
            aDigits[2 * n] = static_cast<wchar_t>(L'0' + n / 10 % 10);
            aDigits[2 * n + 1] = static_cast<wchar_t>(L'0' + n % 10);
        }
    }

    wchar_t aDigits[2 * 256 + 1]{};
};

constexpr DigitPairs kDigitPairs;

void storeTwoDigits(wchar_t* pTarget, unsigned nByte)
{
    std::memcpy(pTarget, kDigitPairs.aDigits + std::size_t{2} * nByte, 2 * sizeof(wchar_t));
}

// Whole blocks, so that the length of the copy does not depend on the text.
void copyBlocks(wchar_t* pTarget, const wchar_t* pText, std::size_t nLength)
{
    for (std::size_t nDone = 0; nDone < nLength; nDone += DateProgram::knBlock)
        std::memcpy(pTarget + nDone, pText + nDone, DateProgram::knBlock * sizeof(wchar_t));
}

// Days between Monday, 1 January of the year 1, and the date, modulo 7. A month that is none counts as January.
unsigned dayOfWeek(const DateTime& tValue)
{
    static constexpr std::uint16_t kDaysBeforeMonth[] = {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
    constexpr int kCycle = 400;  // years; a whole number of weeks
    const int nYear = tValue.year();
    const std::uint64_t nYears = static_cast<std::uint64_t>(nYear > 0 ? nYear - 1 : (nYear % kCycle) + kCycle - 1);
    const bool bLeap = nYear % 4 == 0 && (nYear % 100 != 0 || nYear % kCycle == 0);
    const unsigned nMonth = tValue.month() <= 12 ? tValue.month() : 0;
    const std::uint64_t nDays = 365 * nYears + nYears / 4 - nYears / 100 + nYears / kCycle + kDaysBeforeMonth[nMonth] +
                                (nMonth > 2 && bLeap ? 1 : 0) + tValue.day() + 6;
    return static_cast<unsigned>(nDays % 7);
}

class Fields
{
public:
    // The day of the week costs more than all the rest: only `bDayOfWeek` asks for it.
    Fields(const DateTime& tValue, bool bDayOfWeek)
    {
        const std::uint32_t nYear = magnitudeOfYear(tValue);
        set(DateProgram::kCentury, nYear / 100 % 100);
        set(DateProgram::kYearOfCentury, nYear % 100);
        set(DateProgram::kMonth, tValue.month());
        set(DateProgram::kDay, tValue.day());
        set(DateProgram::kHour12, (tValue.hour() + 11) % 12 + 1);
        set(DateProgram::kHour24, tValue.hour() % 24);
        set(DateProgram::kMinute, tValue.minute());
        set(DateProgram::kSecond, tValue.second());
        set(DateProgram::kDayOfWeek, bDayOfWeek ? dayOfWeek(tValue) : 0);
        set(DateProgram::kMonthIndex, tValue.month() - 1);
        set(DateProgram::kHalfOfDay, tValue.hour() > 11 ? 1 : 0);
    }

    unsigned operator[](DateProgram::Field eField) const { return m_aFields[eField]; }

    static std::uint32_t magnitudeOfYear(const DateTime& tValue)
    {
        const std::uint32_t nBits = static_cast<std::uint32_t>(tValue.year());
        return tValue.year() < 0 ? 0 - nBits : nBits;
    }

private:
    void set(DateProgram::Field eField, unsigned nValue) { m_aFields[eField] = static_cast<std::uint8_t>(nValue); }

    std::uint8_t m_aFields[DateProgram::kFieldEnd_];
};

}  // namespace

// Writes one value straight into the buffer's free room. What it wrote belongs to the buffer once `finish` has been
// called; if it never is, the buffer gets its old length back.
class DateWalk
{
public:
    DateWalk(Buffer& tBuffer, const DateProgram& tProgram, const DateTime& tValue)
        : m_tBuffer(tBuffer),
          m_tProgram(tProgram),
          m_tValue(tValue),
          m_tFields(tValue, tProgram.m_bShowsDayOfWeek),
          m_nOldLength(tBuffer.length())
    {
        findPlace();
    }

    ~DateWalk() { m_tBuffer.truncate(m_nOldLength); }
    DateWalk(const DateWalk&) = delete;
    DateWalk& operator=(const DateWalk&) = delete;

    void walk()
    {
        for (const Step& tStep : m_tProgram.m_vSteps)
        {
            if (tStep.nRoom > static_cast<std::size_t>(m_pEnd - m_pTarget) && !makeRoom(tStep.nRoom))
                return;
            if (!writeVariable(tStep))
                return;
            writeText(tStep);
        }
        hand();
        m_nOldLength = m_tBuffer.length();
    }

private:
    void findPlace()
    {
        m_pTarget = m_tBuffer.freePlace();
        m_pEnd = m_pTarget + (m_tBuffer.capacity() - m_tBuffer.length());
    }

    void hand() { m_tBuffer.advance(static_cast<std::size_t>(m_pTarget - m_tBuffer.freePlace())); }

    bool makeRoom(std::size_t nRoom)
    {
        hand();
        const bool bRoom = m_tBuffer.reserveFree(nRoom);
        findPlace();
        return bRoom;
    }

    // False where there is no more room for the text that follows.
    bool writeVariable(const Step& tStep)
    {
        switch (tStep.eType)
        {
        case Step::kText: break;
        case Step::kNumber: writeNumber(m_tFields[tStep.eField]); break;
        case Step::kPadded: writePadded(m_tFields[tStep.eField], tStep.nDigits); break;
        case Step::kYear: writeYear(); break;
        case Step::kYearPadded: writePadded(Fields::magnitudeOfYear(m_tValue), tStep.nDigits); break;
        case Step::kName: writeName(m_tProgram.m_vNames[tStep.nIndex], m_tFields[tStep.eField]); break;
        case Step::kFraction: return writeFraction(m_tProgram.m_vFractions[tStep.nIndex], tStep.nRoom);
        case Step::kTooLong:
            Assertion::handleFailure("nPad < tov::BasicStringUtils::knNumberAsCharBase10BufSize", kSource, __LINE__);
            break;
        }
        return true;
    }

    void writeText(const Step& tStep)
    {
        copyBlocks(m_pTarget, m_tProgram.m_sTexts.data() + tStep.nTextStart, tStep.nTextLength);
        const DateProgram::Patch* const pPatches = m_tProgram.m_vPatches.data() + tStep.nFirstPatch;
        for (std::uint32_t n = 0; n < tStep.nPatches; ++n)
            storeTwoDigits(m_pTarget + pPatches[n].nOffset, m_tFields[pPatches[n].eField]);
        m_pTarget += tStep.nTextLength;
    }

    // Below 100 without a branch on the value: the pair, from its second digit on where that is the first.
    void writeNumber(unsigned nByte)
    {
        if (nByte >= 100)
            *m_pTarget++ = static_cast<wchar_t>(L'0' + nByte / 100);
        const unsigned nSkipped = nByte < 10 ? 1 : 0;
        std::memcpy(m_pTarget, kDigitPairs.aDigits + std::size_t{2} * nByte + nSkipped, 2 * sizeof(wchar_t));
        m_pTarget += 2 - nSkipped;
    }

    void writePadded(std::uint32_t nNumber, unsigned nDigits)
    {
        for (unsigned n = nDigits; n > 0; --n, nNumber /= 10)
            m_pTarget[n - 1] = static_cast<wchar_t>(L'0' + nNumber % 10);
        m_pTarget += nDigits;
    }

    void writeYear()
    {
        const int nYear = m_tValue.year();
        if (nYear >= 1000 && nYear <= 9999)
        {
            storeTwoDigits(m_pTarget, m_tFields[DateProgram::kCentury]);
            storeTwoDigits(m_pTarget + 2, m_tFields[DateProgram::kYearOfCentury]);
            m_pTarget += 4;
            return;
        }
        char aDigits[12];
        const char* const pLast = std::to_chars(aDigits, aDigits + sizeof aDigits, nYear).ptr;
        for (const char* pDigit = aDigits; pDigit != pLast; ++pDigit)
            *m_pTarget++ = static_cast<wchar_t>(*pDigit);
    }

    void writeName(const DateProgram::NameTable& tTable, unsigned nIndex)
    {
        nIndex = nIndex < DateProgram::NameTable::knNames ? nIndex : DateProgram::NameTable::knNames - 1;
        copyBlocks(m_pTarget, m_tProgram.m_sTexts.data() + tTable.nStart + std::size_t{nIndex} * tTable.nStride,
                   tTable.nStride);
        m_pTarget += tTable.aLengths[nIndex];
    }

    bool writeFraction(const DateProgram::Fraction& tFraction, std::uint32_t nRoom)
    {
        const int nLimit = m_tProgram.m_nMaxSignificantDigits.load(std::memory_order_relaxed);
        if (!tFraction.bPlain || nLimit < kFewestExactDigits || nLimit > kMostExactDigits)
            return formatFraction(tFraction, nRoom);
        writePlainFraction(tFraction);
        return true;
    }

    bool formatFraction(const DateProgram::Fraction& tFraction, std::uint32_t nRoom)
    {
        const double fSeconds = m_tValue.second() + static_cast<double>(m_tValue.nanoseconds()) /
                                                        static_cast<double>(kNanosecondsPerSecond);
        hand();
        tFraction.hFormatter->checkedFormatToBuffer(m_tBuffer, &fSeconds, SQLDataType::kStorageDouble);
        findPlace();
        return makeRoom(nRoom);
    }

    // Rounds to the digits shown, halves up, and drops the zeros at the end that need not be shown.
    void writePlainFraction(const DateProgram::Fraction& tFraction)
    {
        const unsigned nShown = tFraction.nMaxDigits < kNanosecondDigits ? tFraction.nMaxDigits : kNanosecondDigits;
        const std::uint32_t nUnit = kPowersOfTen[kNanosecondDigits - nShown];
        const std::uint32_t nRest = m_tValue.nanoseconds() % kNanosecondsPerSecond;
        std::uint32_t nSeconds = m_tValue.second() + m_tValue.nanoseconds() / kNanosecondsPerSecond;
        std::uint32_t nFraction = (nRest + nUnit / 2) / nUnit;
        if (nFraction == kPowersOfTen[nShown])
        {
            nFraction = 0;
            ++nSeconds;
        }
        unsigned nDigits = nShown;
        for (; nDigits > tFraction.nMinDigits && nFraction % 10 == 0; --nDigits)
            nFraction /= 10;
        const unsigned nZeros = tFraction.nMinDigits > nShown ? tFraction.nMinDigits - nShown : 0;
        writeInteger(nSeconds, tFraction.nIntegerDigits);
        if (nDigits + nZeros == 0)
            return;
        m_pTarget = std::copy(tFraction.sPoint.begin(), tFraction.sPoint.end(), m_pTarget);
        writePadded(nFraction, nDigits);
        writePadded(0, nZeros);
    }

    void writeInteger(std::uint32_t nNumber, unsigned nLeastDigits)
    {
        unsigned nDigits = nLeastDigits;
        while (nDigits < kNanosecondDigits && nNumber >= kPowersOfTen[nDigits])
            ++nDigits;
        writePadded(nNumber, nDigits);
    }

    Buffer& m_tBuffer;
    const DateProgram& m_tProgram;
    const DateTime& m_tValue;
    const Fields m_tFields;
    std::size_t m_nOldLength;
    wchar_t* m_pTarget = nullptr;
    wchar_t* m_pEnd = nullptr;
};

void DateProgram::render(Buffer& tBuffer, const DateTime& tValue) const
{
    DateWalk(tBuffer, *this, tValue).walk();
}

}  // namespace tov

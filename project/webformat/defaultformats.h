#pragma once

namespace tov {

// The patterns that the factories choose where no definition says otherwise.

inline constexpr wchar_t ksDefaultRealFormat[] = L"#,##0.00";
inline constexpr wchar_t ksDefaultIntegerFormat[] = L"#0";

// Exports to CSV.
inline constexpr wchar_t ksBlah[] = L"0.################";  // 16 optional fraction digits: a double's own
inline constexpr wchar_t ksCorvidNumberFullPrecision[] = L"#0.########################################";  // 40
inline constexpr wchar_t s_ksNoPrecision[] = L"#0";
inline constexpr wchar_t ksCSVDateFormat[] = L"yyyy-MM-dd";
inline constexpr wchar_t ksCSVDateTimeFormat[] = L"yyyy-MM-dd HH:mm:ss";

// Text as it is.
inline constexpr wchar_t s_ksSQLVarCharFormat[] = L"@";

// Typed literals: 19 optional fraction digits.
inline constexpr wchar_t ksDefaultFullPrecision[] = L"#0.###################";

// XML values. Kept: the year is "yyy"; documents were always written so.
inline constexpr wchar_t s_ksXmlTimeFormat[] = L"HH:mm:ss.#########";  // exports to CSV too
inline constexpr wchar_t s_ksXmlDateFormat[] = L"yyy-MM-dd";
inline constexpr wchar_t s_ksXmlDateTimeFormat[] = L"yyy-MM-dd\"T\"HH:mm:ss.#########";

// The display time zone that means no conversion.
inline constexpr wchar_t ksBlank[] = L"";

}  // namespace tov

#pragma once

#include <memory>
#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

// The language of the user interface, by its tag: KTWUILanguage(L"he-IL").isHebrew() -> true.
//
// The tag is kept as given and is not checked; only its first letters ever matter. Copies share one text. Immutable:
// any thread.
class WEBFORMAT_EXPORT KTWUILanguage
{
public:
    // "en-us". Constant-initialised: static objects of other files may use it while they are built.
    static const KTWUILanguage kDefaultLanguage;

    // The default language.
    constexpr KTWUILanguage() noexcept = default;
    explicit KTWUILanguage(String sTag);

    const String& GetTag() const;

    // Whether the tag begins with "he" in either case. Two characters are compared, so "hen" counts too (kept).
    bool isHebrew() const;

    // The same tag, whatever the case of its ASCII letters.
    friend WEBFORMAT_EXPORT bool operator==(const KTWUILanguage& tLeft, const KTWUILanguage& tRight);

private:
    std::shared_ptr<const String> m_pTag;  // null: the default language
};

}  // namespace tov

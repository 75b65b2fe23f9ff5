// Case mapping by the C library's own Unicode locale; the locale of the process plays no part.
#include "platform/utf8.h"

#include <locale.h>
#include <wctype.h>

namespace kavidex::platform {

namespace {

locale_t UnicodeLocale() {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return unicode;
}

} // namespace

char32_t SystemLower(char32_t c) {
    const locale_t unicode = UnicodeLocale();
    return unicode ? static_cast<char32_t>(towlower_l(static_cast<wint_t>(c), unicode)) : c;
}

char32_t SystemUpper(char32_t c) {
    const locale_t unicode = UnicodeLocale();
    return unicode ? static_cast<char32_t>(towupper_l(static_cast<wint_t>(c), unicode)) : c;
}

} // namespace kavidex::platform

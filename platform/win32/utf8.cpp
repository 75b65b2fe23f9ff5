// Case mapping by Windows in its invariant locale; the user's language plays no part.
#include "platform/utf8.h"

#include <windows.h>

namespace kavidex::platform {

namespace {

char32_t Map(char32_t c, DWORD how) {
    wchar_t in[2], out[2];
    int length = 1;
    if (c < 0x10000) {
        in[0] = static_cast<wchar_t>(c);
    } else {
        in[0] = static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        in[1] = static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
        length = 2;
    }
    if (LCMapStringEx(LOCALE_NAME_INVARIANT, how, in, length, out, 2, nullptr, nullptr, 0) != length)
        return c;
    if (length == 1) return out[0];
    return 0x10000 + (static_cast<char32_t>(out[0] - 0xD800) << 10) + (out[1] - 0xDC00);
}

} // namespace

char32_t SystemLower(char32_t c) { return Map(c, LCMAP_LOWERCASE); }
char32_t SystemUpper(char32_t c) { return Map(c, LCMAP_UPPERCASE); }

} // namespace kavidex::platform

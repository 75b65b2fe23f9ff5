#include "platform/utf8.h"

#include <algorithm>
#include <iterator>

#include "platform/caseRanges.h"

namespace kavidex::platform {

namespace {

constexpr char32_t bmpEnd = 0x10000;

bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

template <std::size_t count>
char32_t Mapped(const CaseRange (&ranges)[count], char32_t c) {
    const auto* range =
        std::upper_bound(std::begin(ranges), std::end(ranges), c,
                         [](char32_t wanted, const CaseRange& r) { return wanted < r.first; });
    if (range == std::begin(ranges) || c > (--range)->last ||
        (c - range->first) % range->stride != 0)
        return c;
    return c + static_cast<char32_t>(range->delta);
}

} // namespace

char32_t LowerCodePoint(char32_t c) {
    if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
    return Mapped(toLower, c);
}

char32_t UpperCodePoint(char32_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
    return Mapped(toUpper, c);
}

CodePoint DecodeUtf8(std::string_view text, std::size_t position) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(position);
    if (lead < 0x80) return {lead, 1, true};

    const CodePoint malformed{lead, 1, false};
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || position + length > text.size()) return malformed;
    char32_t value = lead & (0x7F >> length);
    for (int i = 1; i < length; ++i) {
        if ((byte(position + i) & 0xC0) != 0x80) return malformed;
        value = value << 6 | (byte(position + i) & 0x3F);
    }
    const char32_t least = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    if (value < least || value > 0x10FFFF || IsSurrogate(value)) return malformed;
    return {value, length, true};
}

void AppendUtf8(std::string& text, char32_t c) {
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | c >> 6);
        tail(0);
    } else if (c < bmpEnd) {
        text += static_cast<char>(0xE0 | c >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | c >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace kavidex::platform

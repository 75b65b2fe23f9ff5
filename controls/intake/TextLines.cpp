#include "controls/intake/TextLines.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/CodePage.h"
#include "platform/text.h"
#include "platform/utf8.h"

namespace kavidex::controls {

namespace {

bool IsUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto point = platform::DecodeUtf8(bytes, i);
        if (!point.valid) return false;
        i += point.length;
    }
    return true;
}

} // namespace

TextLines::TextLines(std::string bytes) : lclBytes(std::move(bytes)) {
    FindEncoding();
    Split();
}

void TextLines::FindEncoding() {
    constexpr std::size_t looked = 4096;
    const std::string_view all = lclBytes;
    const auto is = [&](std::string_view mark) { return all.substr(0, mark.size()) == mark; };
    if (is("\xEF\xBB\xBF")) {
        lclEncoding = Encoding::Utf8;
        lclMark = 3;
    } else if (is("\xFF\xFE") || is("\xFE\xFF")) {
        lclEncoding = all[0] == '\xFF' ? Encoding::Utf16 : Encoding::Utf16Swapped;
        lclMark = 2;
    } else {
        // Plain letters of UTF-16 have a zero byte each; no 8-bit text has one.
        const auto head = all.substr(0, looked);
        std::size_t even = 0, odd = 0;
        for (std::size_t i = 0; i < head.size(); ++i)
            if (head[i] == '\0') ++(i % 2 == 0 ? even : odd);
        if (odd > head.size() / 4)
            lclEncoding = Encoding::Utf16;
        else if (even > head.size() / 4)
            lclEncoding = Encoding::Utf16Swapped;
        else if (IsUtf8(all))
            lclEncoding = Encoding::Utf8;
    }
    if (lclEncoding == Encoding::Utf16 || lclEncoding == Encoding::Utf16Swapped) lclUnit = 2;
}

char16_t TextLines::Unit(std::size_t at) const {
    const auto byte = [&](std::size_t i) {
        return i < lclBytes.size() ? static_cast<unsigned char>(lclBytes[i]) : 0U;
    };
    if (lclUnit == 1) return static_cast<char16_t>(byte(at));
    const bool swapped = lclEncoding == Encoding::Utf16Swapped;
    return static_cast<char16_t>(byte(at + (swapped ? 1 : 0)) | byte(at + (swapped ? 0 : 1)) << 8);
}

void TextLines::Split() {
    std::size_t start = lclMark;
    for (std::size_t at = lclMark; at < lclBytes.size(); at += lclUnit) {
        const char16_t unit = Unit(at);
        if (unit != u'\r' && unit != u'\n') continue;
        const bool pair =
            unit == u'\r' && at + lclUnit < lclBytes.size() && Unit(at + lclUnit) == u'\n';
        const Span end{at, pair ? 2 * lclUnit : lclUnit};
        if (lclLines.empty()) lclEnd = end;
        lclLines.push_back({{start, at - start}, end});
        start = end.from + end.size;
        if (pair) at += lclUnit;
    }
    if (start < lclBytes.size())
        lclLines.push_back({{start, lclBytes.size() - start}, {lclBytes.size(), 0}});
    if (lclEnd.size == 0) lclEnd = Add(Encoded("\r\n"));
}

std::string TextLines::Line(std::size_t at) const {
    const auto span = lclLines[at].text;
    const auto bytes = In(span);
    if (lclEncoding == Encoding::Utf8) return std::string(bytes);
    if (lclEncoding == Encoding::Narrow)
        return platform::FromCodePage(bytes, platform::systemCodePage);
    std::u16string units;
    for (std::size_t i = 0; i < span.size; i += 2) units += Unit(span.from + i);
    return platform::ToUtf8(units);
}

// What the code page lacks becomes a question mark.
std::string TextLines::Encoded(std::string_view text) const {
    if (lclEncoding == Encoding::Utf8) return std::string(text);
    if (lclEncoding == Encoding::Narrow) {
        if (auto narrow = platform::ToCodePage(text, platform::systemCodePage))
            return std::move(*narrow);
        std::string plain;
        for (const char c : text) plain += static_cast<unsigned char>(c) < 128 ? c : '?';
        return plain;
    }
    std::string bytes;
    for (const char16_t unit : platform::ToUtf16(text)) {
        const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        const bool swapped = lclEncoding == Encoding::Utf16Swapped;
        bytes += swapped ? high : low;
        bytes += swapped ? low : high;
    }
    return bytes;
}

TextLines::Span TextLines::Add(const std::string& encoded) {
    const Span span{lclBytes.size(), encoded.size()};
    lclBytes += encoded;
    return span;
}

void TextLines::Set(std::size_t at, std::string_view text) {
    lclLines[at].text = Add(Encoded(text));
}

void TextLines::Insert(std::size_t at, std::string_view text) {
    if (at > 0 && lclLines[at - 1].end.size == 0) lclLines[at - 1].end = lclEnd;
    lclLines.insert(lclLines.begin() + static_cast<std::ptrdiff_t>(at),
                    {Add(Encoded(text)), lclEnd});
}

std::string TextLines::Bytes() const {
    std::string bytes;
    bytes.reserve(lclBytes.size()); // such a file may be large
    bytes.append(lclBytes, 0, lclMark);
    for (const auto& line : lclLines) bytes.append(In(line.text)).append(In(line.end));
    return bytes;
}

} // namespace kavidex::controls

#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "platform/utf8.h"

namespace kavidex::platform {

namespace {

void AppendMapped(std::string& out, std::string_view text, char32_t (*map)(char32_t)) {
    for (std::size_t i = 0; i < text.size();) {
        const CodePoint c = DecodeUtf8(text, i);
        if (c.valid)
            AppendUtf8(out, map(c.value));
        else
            out += text[i];
        i += c.length;
    }
}

std::string MapCase(std::string_view text, char32_t (*map)(char32_t)) {
    std::string out;
    out.reserve(text.size());
    AppendMapped(out, text, map);
    return out;
}

// The next code point in lower case. Malformed bytes lie above all characters, each at a place of
// its own, so that different texts never compare as equal.
char32_t NextLower(std::string_view text, std::size_t& position) {
    const CodePoint c = DecodeUtf8(text, position);
    position += c.length;
    return c.valid ? LowerCodePoint(c.value) : 0x110000 + c.value;
}

// The letters of Latin words that carry a mark, by the code point where each run begins; 0 ends
// one.
struct LetterRun {
    char32_t from;
    char letter;
};
constexpr LetterRun markedLetters[] = {
    {0xDF, 's'},  {0xE0, 'a'},  {0xE7, 'c'},  {0xE8, 'e'},  {0xEC, 'i'},  {0xF0, 'd'},
    {0xF1, 'n'},  {0xF2, 'o'},  {0xF7, 0},    {0xF8, 'o'},  {0xF9, 'u'},  {0xFD, 'y'},
    {0xFE, 't'},  {0xFF, 'y'},  {0x100, 'a'}, {0x106, 'c'}, {0x10E, 'd'}, {0x112, 'e'},
    {0x11C, 'g'}, {0x124, 'h'}, {0x128, 'i'}, {0x134, 'j'}, {0x136, 'k'}, {0x139, 'l'},
    {0x143, 'n'}, {0x14C, 'o'}, {0x154, 'r'}, {0x15A, 's'}, {0x162, 't'}, {0x168, 'u'},
    {0x174, 'w'}, {0x176, 'y'}, {0x179, 'z'}, {0x17F, 's'}, {0x180, 0},
};

char32_t WithoutMark(char32_t c) {
    if (c < markedLetters[0].from || c >= 0x180) return c;
    const LetterRun* next =
        std::upper_bound(std::begin(markedLetters), std::end(markedLetters), c,
                         [](char32_t value, const LetterRun& run) { return value < run.from; });
    const char letter = (next - 1)->letter;
    return letter ? static_cast<unsigned char>(letter) : c;
}

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// "&HFF" and "&O17": up to four hexadecimal digits are a 16-bit number with its sign, up to eight a
// 32-bit one.
double RadixVal(const std::string& text, int radix) {
    std::uint64_t number = 0;
    const char* first = text.data() + 2;
    if (std::from_chars(first, text.data() + text.size(), number, radix).ec != std::errc())
        return 0;
    if (number <= 0xFFFF) return static_cast<std::int16_t>(number);
    if (number <= 0xFFFFFFFF) return static_cast<std::int32_t>(number);
    return static_cast<double>(number);
}

// The longest beginning of `text` that is a decimal number.
std::size_t NumberLength(const std::string& text) {
    std::size_t i = 0, digits = 0;
    const auto run = [&] {
        for (; i < text.size() && IsDigit(text[i]); ++i) ++digits;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    run();
    if (i < text.size() && text[i] == '.') {
        ++i;
        run();
    }
    if (digits == 0) return 0;
    if (i < text.size() && text[i] == 'e') {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
        if (j < text.size() && IsDigit(text[j])) {
            i = j;
            run();
        }
    }
    return i;
}

} // namespace

std::string_view TrimView(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Trim(std::string_view text) { return std::string(TrimView(text)); }

std::string LowerCase(std::string_view text) { return MapCase(text, &LowerCodePoint); }
void AppendLowerCase(std::string& to, std::string_view text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) >= 0x80) return AppendMapped(to, text, &LowerCodePoint);
    const std::size_t from = to.size();
    to.append(text);
    for (std::size_t i = from; i < to.size(); ++i) to[i] = AsciiLower(to[i]);
}
std::string UpperCase(std::string_view text) { return MapCase(text, &UpperCodePoint); }

int CompareNoCase(std::string_view a, std::string_view b) {
    std::size_t i = 0, j = 0;
    int marks = 0; // the first difference in marks alone
    while (i < a.size() && j < b.size()) {
        const char32_t x = NextLower(a, i), y = NextLower(b, j);
        if (x == y) continue;
        const char32_t plainX = WithoutMark(x), plainY = WithoutMark(y);
        if (plainX != plainY) return plainX < plainY ? -1 : 1;
        if (marks == 0) marks = x < y ? -1 : 1;
    }
    return i < a.size() ? 1 : j < b.size() ? -1 : marks;
}

bool EqualNoCase(std::string_view a, std::string_view b) { return CompareNoCase(a, b) == 0; }

bool EqualAsciiNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return AsciiLower(x) == AsciiLower(y);
           });
}

std::string Replace(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty()) return std::string(text);
    std::string out;
    std::size_t start = 0;
    for (auto hit = text.find(from); hit != std::string_view::npos; hit = text.find(from, start)) {
        out.append(text, start, hit - start).append(to);
        start = hit + from.size();
    }
    return out.append(text.substr(start));
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    if (text.empty()) return parts;
    std::size_t start = 0;
    for (auto hit = text.find(separator); hit != std::string_view::npos;
         hit = text.find(separator, start)) {
        parts.emplace_back(text.substr(start, hit - start));
        start = hit + 1;
    }
    parts.emplace_back(text.substr(start));
    return parts;
}

std::u16string ToUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const CodePoint c = DecodeUtf8(utf8, i);
        i += c.length;
        if (!c.valid) {
            out += u'\uFFFD';
        } else if (c.value < 0x10000) {
            out += static_cast<char16_t>(c.value);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c.value - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + (c.value & 0x3FF));
        }
    }
    return out;
}

std::string ToUtf8(std::u16string_view utf16) {
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        const char32_t unit = utf16[i];
        const char32_t next = i + 1 < utf16.size() ? utf16[i + 1] : 0;
        if (unit < 0xD800 || unit > 0xDFFF) {
            AppendUtf8(out, unit);
        } else if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            AppendUtf8(out, 0xFFFD);
        }
    }
    return out;
}

double Val(std::string_view text) {
    std::string packed;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
        const char lower = AsciiLower(c);
        packed += lower == 'd' && packed.find('&') == std::string::npos ? 'e' : lower;
    }
    if (packed.rfind("&h", 0) == 0) return RadixVal(packed, 16);
    if (packed.rfind("&o", 0) == 0) return RadixVal(packed, 8);

    const char* first = packed.data();
    const char* last = first + NumberLength(packed);
    if (first != last && *first == '+') ++first;
    double number = 0;
    if (std::from_chars(first, last, number).ec != std::errc()) return 0;
    return number;
}

std::string FillPlaceholders(std::string_view text, const std::vector<std::string>& values) {
    constexpr std::string_view placeholder = "$%$";
    std::string out;
    std::size_t start = 0;
    for (const std::string& value : values) {
        const auto hit = text.find(placeholder, start);
        if (hit == std::string_view::npos) break;
        out.append(text, start, hit - start).append(value);
        start = hit + placeholder.size();
    }
    return out.append(text.substr(start));
}

} // namespace kavidex::platform

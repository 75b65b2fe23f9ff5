#include "platform/Files.h"

#include <algorithm>
#include <iterator>

#include "platform/text.h"
#include "platform/utf8.h"

namespace kavidex::platform {

namespace {

constexpr std::string_view separators = "\\/";

// The part after the last separator.
std::size_t NameStart(std::string_view path) {
    const auto last = path.find_last_of(separators);
    return last == std::string_view::npos ? 0 : last + 1;
}

// The dot of the extension; one that begins the name begins no extension.
std::size_t ExtensionDot(std::string_view name) {
    const auto dot = name.rfind('.');
    return dot == 0 ? std::string_view::npos : dot;
}

} // namespace

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && separators.find(path.back()) == std::string_view::npos) path += '\\';
    return path.append(name);
}

std::string FileName(std::string_view path) { return std::string(path.substr(NameStart(path))); }

std::string FolderOf(std::string_view path) {
    const auto start = NameStart(path);
    return std::string(path.substr(0, start == 0 ? 0 : start - 1));
}

std::string Extension(std::string_view path) {
    const std::string_view name = path.substr(NameStart(path));
    const auto dot = ExtensionDot(name);
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}

std::string WithoutExtension(std::string_view fileName) {
    const auto start = NameStart(fileName);
    const auto dot = ExtensionDot(fileName.substr(start));
    return std::string(dot == std::string_view::npos ? fileName : fileName.substr(0, start + dot));
}

bool IsFileName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), CanBeInFileName) &&
           name.back() != '.' && name.back() != ' ' && !IsDeviceName(name);
}

bool CanBeInFileName(char c) {
    return static_cast<unsigned char>(c) >= 32 &&
           std::string_view("\\/:*?\"<>|").find(c) == std::string_view::npos;
}

bool IsDeviceName(std::string_view fileName) {
    constexpr std::string_view devices[] = {"con", "prn", "aux", "nul", "conin$", "conout$"};
    constexpr std::string_view ports[] = {"com", "lpt"};
    constexpr std::string_view superscripts[] = {"\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};
    // What follows a dot counts for nothing, nor do blanks before it.
    const std::string name = LowerCase(TrimView(fileName.substr(0, fileName.find('.'))));
    if (std::find(std::begin(devices), std::end(devices), name) != std::end(devices)) return true;
    if (name.size() < 4 ||
        std::find(std::begin(ports), std::end(ports), name.substr(0, 3)) == std::end(ports))
        return false;
    const std::string number = name.substr(3);
    return (number.size() == 1 && number[0] >= '0' && number[0] <= '9') ||
           std::find(std::begin(superscripts), std::end(superscripts), number) !=
               std::end(superscripts);
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*") return true;
    constexpr auto none = std::string_view::npos;
    std::size_t n = 0, p = 0, star = none, retry = 0;
    while (n < name.size()) {
        const CodePoint c = DecodeUtf8(name, n);
        const CodePoint want = p < pattern.size() ? DecodeUtf8(pattern, p) : CodePoint{0, 0, false};
        if (want.length != 0 && want.value == '*') {
            star = ++p;
            retry = n;
        } else if (want.length != 0 &&
                   (want.value == '?' || LowerCodePoint(want.value) == LowerCodePoint(c.value))) {
            n += c.length;
            p += want.length;
        } else if (star != none) {
            retry += DecodeUtf8(name, retry).length;
            n = retry;
            p = star;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

void SortNames(std::vector<std::string>& names) {
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const int order = CompareNoCase(a, b);
        return order != 0 ? order < 0 : a < b;
    });
}

} // namespace kavidex::platform

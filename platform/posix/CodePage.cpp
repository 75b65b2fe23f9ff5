#include "platform/CodePage.h"

#include <iconv.h>

#include <memory>

#include "platform/text.h"

namespace kavidex::platform {

namespace {

constexpr std::uint32_t utf8 = 65001;

struct Close {
    void operator()(void* converter) const { ::iconv_close(converter); }
};
using Converter = std::unique_ptr<void, Close>;

Converter Open(const std::string& to, const std::string& from) {
    const iconv_t converter = ::iconv_open(to.c_str(), from.c_str());
    return Converter(converter == reinterpret_cast<iconv_t>(-1) ? nullptr : converter);
}

std::string NameOf(std::uint32_t codePage) {
    if (codePage >= 28591 && codePage <= 28606)
        return "ISO-8859-" + std::to_string(codePage - 28590);
    if (codePage == 20127) return "ASCII";
    if (codePage == 20866) return "KOI8-R";
    if (codePage == 50220 || codePage == 50221) return "ISO-2022-JP";
    return "CP" + std::to_string(codePage == systemCodePage ? 1252 : codePage);
}

// Converts all of `bytes`; `broken` answers what stands for a byte that is no character, null ends
// it.
std::optional<std::string> Convert(void* converter, std::string_view bytes, const char* broken) {
    std::string input(bytes), result;
    char* from = input.data();
    std::size_t left = input.size();
    while (true) {
        char buffer[1024];
        char* to = buffer;
        std::size_t room = sizeof buffer;
        const std::size_t rc = ::iconv(converter, left ? &from : nullptr, &left, &to, &room);
        result.append(buffer, to);
        if (rc != static_cast<std::size_t>(-1)) {
            if (left == 0) return result;
        } else if (to == buffer) {
            if (!broken) return std::nullopt;
            result += broken;
            ++from;
            --left;
        }
    }
}

} // namespace

std::string FromCodePage(std::string_view bytes, std::uint32_t codePage) {
    if (codePage == utf8) return ToUtf8(ToUtf16(bytes));
    Converter converter = Open("UTF-8", NameOf(codePage));
    if (!converter) converter = Open("UTF-8", NameOf(systemCodePage));
    return *Convert(converter.get(), bytes, "\xEF\xBF\xBD");
}

std::optional<std::string> ToCodePage(std::string_view text, std::uint32_t codePage) {
    if (codePage == utf8) return std::string(text);
    const Converter converter = Open(NameOf(codePage), "UTF-8");
    if (!converter) return std::nullopt;
    return Convert(converter.get(), text, nullptr);
}

} // namespace kavidex::platform

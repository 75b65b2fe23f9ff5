#include "platform/IniText.h"

#include "platform/Bytes.h"
#include "platform/CodePage.h"
#include "platform/text.h"

namespace kavidex::platform {

namespace {

std::string Decoded(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return ToUtf8(ToUtf16(bytes.substr(3)));
    if (!bytes.starts_with("\xFF\xFE")) return FromCodePage(bytes, systemCodePage);
    std::u16string wide;
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2)
        wide += static_cast<char16_t>(ReadLittle<std::uint16_t>(bytes, at));
    return ToUtf8(wide);
}

std::string_view Stripped(std::string_view text) {
    constexpr std::string_view blank = " \t\r";
    const auto first = text.find_first_not_of(blank);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blank) - first + 1);
}

std::string_view Unquoted(std::string_view text) {
    const bool quoted = text.size() > 1 && (text.front() == '"' || text.front() == '\'') &&
                        text.back() == text.front();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

} // namespace

std::optional<std::string> IniEntry(std::string_view bytes, std::string_view section,
                                    std::string_view key) {
    bool inside = false;
    for (const auto& line : Split(Decoded(bytes), '\n')) {
        const auto text = Stripped(line);
        if (text.starts_with('[')) {
            inside = EqualNoCase(Stripped(text.substr(1, text.find(']') - 1)), section);
            continue;
        }
        const auto equals = text.find('=');
        if (!inside || equals == std::string_view::npos || text.starts_with(';')) continue;
        if (EqualNoCase(Stripped(text.substr(0, equals)), key))
            return std::string(Unquoted(Stripped(text.substr(equals + 1))));
    }
    return std::nullopt;
}

} // namespace kavidex::platform

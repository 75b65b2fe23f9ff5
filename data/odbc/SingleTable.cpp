#include "data/odbc/SingleTable.h"

#include <algorithm>

#include "platform/text.h"

namespace kavidex::data::odbc {

namespace {

using platform::EqualAsciiNoCase;

// The next word or single sign; a quoted name is one word, its quotes taken off.
std::string_view NextWord(std::string_view& text) {
    constexpr std::string_view blanks = " \t\r\n", ends = " \t\r\n,()";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return text = {};
    text.remove_prefix(first);
    const char quote = text[0] == '[' ? ']' : text[0] == '`' || text[0] == '"' ? text[0] : '\0';
    if (quote) {
        const auto end = text.find(quote, 1);
        const std::string_view word = text.substr(1, end == std::string_view::npos ? end : end - 1);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        return word;
    }
    const auto end = std::max<std::size_t>(1, std::min(text.size(), text.find_first_of(ends)));
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

} // namespace

std::string SingleTable(std::string_view statement) {
    std::string_view rest = statement;
    if (!EqualAsciiNoCase(NextWord(rest), "select") || NextWord(rest) != "*" ||
        !EqualAsciiNoCase(NextWord(rest), "from"))
        return {};
    const std::string_view table = NextWord(rest), next = NextWord(rest);
    const bool plain =
        next.empty() || EqualAsciiNoCase(next, "where") || EqualAsciiNoCase(next, "order");
    return plain ? std::string(table) : std::string();
}

bool ChangesRowsOnly(std::string_view statement) {
    const std::string_view first = NextWord(statement);
    return EqualAsciiNoCase(first, "insert") || EqualAsciiNoCase(first, "update") ||
           EqualAsciiNoCase(first, "delete");
}

} // namespace kavidex::data::odbc

#include "data/embedded/Translator.h"

#include "data/Error.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

constexpr std::string_view reserved[] = {
    "all",   "and",    "as",     "between", "by",    "case",  "create", "delete", "distinct",
    "drop",  "else",   "end",    "exists",  "from",  "full",  "group",  "having", "in",
    "inner", "insert", "into",   "is",      "join",  "left",  "like",   "mod",    "not",
    "null",  "on",     "or",     "order",   "outer", "right", "select", "set",    "then",
    "union", "update", "values", "when",    "where", "with",
};

constexpr int manyTokens = 200000;

std::string Doubled(std::string_view text, char quote) {
    std::string result(1, quote);
    for (const char c : text) {
        result += c;
        if (c == quote) result += quote;
    }
    return result + quote;
}

} // namespace

bool IsReserved(std::string_view word) {
    for (const std::string_view candidate : reserved)
        if (platform::EqualAsciiNoCase(candidate, word)) return true;
    return false;
}

std::string QuotedName(std::string_view name) { return Doubled(name, '"'); }
std::string QuotedText(std::string_view text) { return Doubled(text, '\''); }

std::string IndexName(std::string_view table, std::string_view index) {
    return QuotedName(std::string(table) + "." + std::string(index));
}

TokenReader::TokenReader(std::string_view statement) : lclStatement(statement) {
    Scanner scanner(statement);
    int parameters = 0;
    do {
        if (lclTokens.size() > manyTokens) RefuseSyntax("it is too long", statement.substr(0, 200));
        lclTokens.push_back(scanner.Next());
        Token& token = lclTokens.back();
        if (IsLiteral(token.kind)) token.literal = lclLiterals++;
        if (token.kind == TokenKind::Parameter) token.literal = parameters++;
    } while (lclTokens.back().kind != TokenKind::End);
}

const Token& TokenReader::Peek(std::size_t ahead) const {
    const std::size_t at = lclAt + ahead;
    return at < lclTokens.size() ? lclTokens[at] : lclTokens.back();
}

Token TokenReader::Take() {
    const Token token = Peek();
    if (lclAt + 1 < lclTokens.size()) ++lclAt;
    return token;
}

bool TokenReader::PeekWord(std::string_view word, std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Word && platform::EqualAsciiNoCase(token.text, word);
}

bool TokenReader::PeekSymbol(std::string_view symbol, std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Symbol && token.text == symbol;
}

bool TokenReader::TakeWord(std::string_view word) {
    if (!PeekWord(word)) return false;
    Take();
    return true;
}

bool TokenReader::TakeSymbol(std::string_view symbol) {
    if (!PeekSymbol(symbol)) return false;
    Take();
    return true;
}

void TokenReader::NeedWord(std::string_view word) {
    if (!TakeWord(word)) Refuse("'" + std::string(word) + "' is missing");
}

void TokenReader::NeedSymbol(std::string_view symbol) {
    if (!TakeSymbol(symbol)) Refuse("'" + std::string(symbol) + "' is missing");
}

std::string_view TokenReader::NeedName(bool reservedToo) {
    const Token& token = Peek();
    const bool fits = token.kind == TokenKind::Name ||
                      (token.kind == TokenKind::Word && (reservedToo || !IsReserved(token.text)));
    if (!fits) Refuse("a name is missing");
    return Take().text;
}

std::string_view TokenReader::NeedTable() {
    const std::string_view name = NeedName(false);
    if (platform::EqualAsciiNoCase(name.substr(0, 7), "sqlite_"))
        throw Error(errors::noTable, "There is no table '" + std::string(name) + "'.",
                    "EmbeddedDatabase", std::string(lclStatement));
    return name;
}

void TokenReader::NeedEnd() {
    while (TakeSymbol(";")) {
    }
    if (Peek().kind != TokenKind::End) Refuse();
}

void TokenReader::Refuse(const std::string& why) const {
    const Token& token = Peek();
    if (token.kind == TokenKind::End) RefuseSyntax(why + " at its end", lclStatement);
    RefuseSyntax(why + " at '" + std::string(lclStatement.substr(token.at, 40)) + "'",
                 lclStatement);
}

std::string TokenReader::LiteralText(const Token& token) const {
    std::string scratch;
    const Literal literal = Scanner(lclStatement).ValueOf(token, scratch);
    if (token.kind == TokenKind::Whole || token.kind == TokenKind::Number)
        return std::string(token.text);
    return QuotedText(literal.text);
}

} // namespace kavidex::data::embedded

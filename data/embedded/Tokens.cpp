#include "data/embedded/Tokens.h"

#include <charconv>
#include <cstdio>

#include "data/Error.h"
#include "data/embedded/Dates.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool BeginsWord(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool InWord(char c) { return BeginsWord(c) || IsDigit(c) || c == '$'; }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Marks of literals in a shape, by kind; statements hold no such characters elsewhere.
char MarkOf(TokenKind kind) {
    switch (kind) {
    case TokenKind::Text: return '\x01';
    case TokenKind::Whole: return '\x02';
    case TokenKind::Number: return '\x03';
    default: return '\x04';
    }
}

} // namespace

void RefuseSyntax(const std::string& why, std::string_view statement) {
    throw Error(errors::syntax, "Syntax error in the statement: " + why + ".", "EmbeddedDatabase",
                std::string(statement));
}

bool IsLiteral(TokenKind kind) {
    return kind == TokenKind::Text || kind == TokenKind::Whole || kind == TokenKind::Number ||
           kind == TokenKind::Date;
}

void Scanner::Refuse(const std::string& why, std::size_t at) const {
    RefuseSyntax(why + " at '" + std::string(lclText.substr(at, 40)) + "'", lclText);
}

Token Scanner::Next() {
    while (lclAt < lclText.size() && IsBlank(lclText[lclAt])) ++lclAt;
    Token token;
    token.at = lclAt;
    if (lclAt >= lclText.size()) return token;
    const char c = lclText[lclAt];
    const char next = lclAt + 1 < lclText.size() ? lclText[lclAt + 1] : '\0';
    if (BeginsWord(c)) {
        std::size_t end = lclAt;
        while (end < lclText.size() && InWord(lclText[end])) ++end;
        token.kind = TokenKind::Word;
        token.text = lclText.substr(lclAt, end - lclAt);
        lclAt = end;
        return token;
    }
    if (IsDigit(c) || (c == '.' && IsDigit(next))) return NumberToken();
    switch (c) {
    case '\'':
    case '"':
    case '#':
    case '`': return Quoted(c);
    case '[': return Quoted(']');
    case '?': token.kind = TokenKind::Parameter; break;
    case '@': {
        constexpr std::string_view identity = "@@identity";
        const std::string_view found = lclText.substr(lclAt, identity.size());
        if (!platform::EqualAsciiNoCase(found, identity)) Refuse("a variable is not known", lclAt);
        token.kind = TokenKind::Identity;
        token.text = found;
        lclAt += found.size();
        return token;
    }
    case '<':
    case '>': {
        const bool two = next == '=' || (c == '<' && next == '>');
        token.kind = TokenKind::Symbol;
        token.text = lclText.substr(lclAt, two ? 2 : 1);
        lclAt += token.text.size();
        return token;
    }
    case '(':
    case ')':
    case ',':
    case '.':
    case ';':
    case '=':
    case '+':
    case '-':
    case '*':
    case '/':
    case '\\':
    case '^':
    case '&': token.kind = TokenKind::Symbol; break;
    default: Refuse("a character that is not understood", lclAt);
    }
    token.text = lclText.substr(lclAt++, 1);
    return token;
}

Token Scanner::Quoted(char quote) {
    Token token;
    token.at = lclAt;
    const bool name = quote == ']' || quote == '`';
    token.kind = name ? TokenKind::Name : quote == '#' ? TokenKind::Date : TokenKind::Text;
    const std::size_t begin = ++lclAt;
    for (;; ++lclAt) {
        lclAt = lclText.find(quote, lclAt);
        if (lclAt == std::string_view::npos)
            Refuse(name ? "a name without its end" : "a text without its end", token.at);
        const bool doubled = token.kind == TokenKind::Text && lclAt + 1 < lclText.size() &&
                             lclText[lclAt + 1] == quote;
        if (!doubled) break;
        ++lclAt;
    }
    token.text = lclText.substr(begin, lclAt - begin);
    ++lclAt;
    if (name && (token.text.empty() || token.text.find('\0') != std::string_view::npos))
        Refuse("an empty name", token.at);
    return token;
}

Token Scanner::NumberToken() {
    Token token;
    token.at = lclAt;
    token.kind = TokenKind::Whole;
    std::size_t end = lclAt;
    const auto digits = [&] {
        while (end < lclText.size() && IsDigit(lclText[end])) ++end;
    };
    digits();
    if (end < lclText.size() && lclText[end] == '.') {
        token.kind = TokenKind::Number;
        ++end;
        digits();
    }
    if (end < lclText.size() && (lclText[end] == 'e' || lclText[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < lclText.size() && (lclText[exponent] == '+' || lclText[exponent] == '-'))
            ++exponent;
        if (exponent < lclText.size() && IsDigit(lclText[exponent])) {
            token.kind = TokenKind::Number;
            end = exponent;
            digits();
        }
    }
    if (end < lclText.size() && BeginsWord(lclText[end]))
        Refuse("a number runs into a name", lclAt);
    token.text = lclText.substr(lclAt, end - lclAt);
    lclAt = end;
    return token;
}

Literal Scanner::ValueOf(const Token& token, std::string& scratch) const {
    Literal literal;
    literal.kind = token.kind;
    const char* begin = token.text.data();
    const char* end = begin + token.text.size();
    switch (token.kind) {
    case TokenKind::Whole:
        if (std::from_chars(begin, end, literal.whole).ec == std::errc()) break;
        literal.kind = TokenKind::Number; // beyond the whole numbers
        [[fallthrough]];
    case TokenKind::Number:
        if (std::from_chars(begin, end, literal.number).ec != std::errc())
            Refuse("a number that is too large", token.at);
        break;
    case TokenKind::Date:
        if (!ReadDate(token.text, scratch)) Refuse("a date that is not understood", token.at);
        literal.text = scratch;
        break;
    default: {
        const char quote = lclText[token.at];
        literal.text = token.text;
        if (token.text.find(quote) == std::string_view::npos) break;
        scratch.clear();
        for (std::size_t i = 0; i < token.text.size(); ++i) {
            scratch += token.text[i];
            if (token.text[i] == quote) ++i; // its double
        }
        literal.text = scratch;
    }
    }
    return literal;
}

void Shape::Read(std::string_view statement) {
    text.clear();
    literals.clear();
    lclScratch.clear();
    parameters = 0;
    // Views into the scratch texts must hold while more are added.
    std::size_t quotes = 0;
    for (const char c : statement)
        if (c == '\'' || c == '"' || c == '#') ++quotes;
    lclScratch.reserve(quotes / 2 + 1);
    Scanner scanner(statement);
    std::string scratch;
    std::size_t copied = 0;
    for (Token token = scanner.Next(); token.kind != TokenKind::End; token = scanner.Next()) {
        if (token.kind == TokenKind::Parameter) ++parameters;
        if (!IsLiteral(token.kind)) continue;
        scratch.clear();
        Literal literal = scanner.ValueOf(token, scratch);
        if (!scratch.empty() && literal.text.data() == scratch.data()) {
            lclScratch.push_back(scratch);
            literal.text = lclScratch.back();
        }
        text.append(statement.substr(copied, token.at - copied));
        text += MarkOf(token.kind);
        literals.push_back(literal);
        const bool quoted = token.kind == TokenKind::Text || token.kind == TokenKind::Date;
        copied = token.at + token.text.size() + (quoted ? 2 : 0);
    }
    text.append(statement.substr(copied));
}

} // namespace kavidex::data::embedded

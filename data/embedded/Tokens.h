// Statements of the Access dialect, cut into tokens.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::data::embedded {

enum class TokenKind {
    Word,      // a keyword or a name
    Name,      // a name in brackets or back-quotes, never a keyword
    Text,      // 'a' or "a"
    Whole,     // 12
    Number,    // 1.5
    Date,      // #2004-05-01#
    Parameter, // ?
    Identity,  // @@IDENTITY
    Symbol,    // operators and punctuation, such as <= or (
    End
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view text; // as it stands in the statement, without the brackets of a name
    std::size_t at = 0;    // where it begins in the statement
    int literal = -1;      // number among the literals, or among the parameters
};

// A literal, ready to be bound; the texts that a view names live in the statement or in `Literals`.
struct Literal {
    TokenKind kind = TokenKind::End;
    std::int64_t whole = 0;
    double number = 0;
    std::string_view text;
};

// Reads one token after the other. Throws data::Error errors::syntax for a text without its end, a
// malformed date, or a character that no statement holds.
class Scanner {
public:
    explicit Scanner(std::string_view statement) : lclText(statement) {}

    Token Next();
    // The value of the literal token just read; `scratch` holds it where quotes had to be undone.
    Literal ValueOf(const Token& token, std::string& scratch) const;

private:
    Token Quoted(char quote);
    Token NumberToken();
    [[noreturn]] void Refuse(const std::string& why, std::size_t at) const;

    std::string_view lclText;
    std::size_t lclAt = 0;
};

bool IsLiteral(TokenKind kind);

// A statement with its literals taken out: equal shapes share one prepared statement.
struct Shape {
    std::string text; // each literal is one control character that tells its kind
    std::vector<Literal> literals;
    int parameters = 0; // ? in the statement

    // Reads `statement`, reusing the memory of the last reading.
    void Read(std::string_view statement);

private:
    std::vector<std::string> lclScratch;
};

[[noreturn]] void RefuseSyntax(const std::string& why, std::string_view statement);

} // namespace kavidex::data::embedded

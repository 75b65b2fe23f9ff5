// From the Access dialect to SQLite, by recursive descent over tokens.
//
// Every literal becomes a parameter, numbered in the order of the text, so that one prepared
// statement serves all statements of the same shape. What belongs to other dialects is refused.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Value.h"
#include "data/embedded/Tokens.h"

namespace kavidex::data::embedded {

// TOP n gives the rows that are equal to the n-th as well: the statement itself has no end, and
// whoever runs it stops after `rows` where one of the compared columns changes.
struct Ties {
    int rows = 0;              // 0: the statement ends by itself
    int hidden = 0;            // columns at the end that are there to be compared only
    std::vector<int> compared; // columns of the result from 0; -1 the first hidden one, -2 the next
};

struct Translation {
    std::vector<std::string> statements; // to be run as one; more than one only in a definition
    bool definition = false;             // changes the schema
    bool fixed = false; // a literal stands in the statement itself, such as the 5 of "top 5"
    Ties ties;
};

struct TableColumn {
    std::string name;
    AdoType type;
};
// The columns of a table in their order; none when there is no such table.
using ColumnsOfTable = std::function<std::vector<TableColumn>(std::string_view table)>;

// Throws data::Error: errors::syntax with the place that was not understood. Without `columns`
// values are written as they come, whatever the type of their column.
Translation Translate(std::string_view statement, const ColumnsOfTable& columns = {});

std::string QuotedName(std::string_view name);
std::string QuotedText(std::string_view text);
// Index names are the table's own in this dialect, the file's in SQLite.
std::string IndexName(std::string_view table, std::string_view index);

// The tokens of one statement with a place in them, and what every part of the grammar asks.
class TokenReader {
public:
    explicit TokenReader(std::string_view statement);

    const Token& Peek(std::size_t ahead = 0) const;
    Token Take();
    bool PeekWord(std::string_view word, std::size_t ahead = 0) const;
    bool PeekSymbol(std::string_view symbol, std::size_t ahead = 0) const;
    bool TakeWord(std::string_view word);
    bool TakeSymbol(std::string_view symbol);
    void NeedWord(std::string_view word);
    void NeedSymbol(std::string_view symbol);
    // A name; reserved words too where only a name can stand.
    std::string_view NeedName(bool reservedToo);
    std::string_view NeedTable();
    void NeedEnd();
    [[noreturn]] void Refuse(const std::string& why = "not understood") const;

    int Literals() const { return lclLiterals; }
    std::string_view Statement() const { return lclStatement; }
    std::string LiteralText(const Token& token) const;

private:
    std::string_view lclStatement;
    std::vector<Token> lclTokens;
    std::size_t lclAt = 0;
    int lclLiterals = 0;
};

// Words that end a name-less expression; a column of such a name needs brackets there.
bool IsReserved(std::string_view word);

// CREATE, ALTER and DROP; the reader stands before the first word.
Translation TranslateDefinition(TokenReader& reader);

} // namespace kavidex::data::embedded

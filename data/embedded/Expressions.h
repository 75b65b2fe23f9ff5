// The expressions of the Access dialect.
#pragma once

#include <functional>
#include <string>

#include "data/embedded/Translator.h"

namespace kavidex::data::embedded {

// What an operator must know of its operands.
enum class Operand { Column, Text, Date, Number, Whole, True, False, Other };

struct Expression {
    std::string text; // in SQLite
    Operand kind = Operand::Other;
};

// The value as a column of that type keeps it.
std::string AsStored(AdoType type, const Expression& value);

class ExpressionParser {
public:
    // `subquery` translates a SELECT at the reader's place, without its parentheses; `isFlag` tells
    // of a translated column whether it is a yes/no column.
    ExpressionParser(TokenReader& reader, std::function<std::string()> subquery,
                     std::function<bool(std::string_view)> isFlag)
        : lclReader(reader), lclSubquery(std::move(subquery)), lclIsFlag(std::move(isFlag)) {}

    Expression Parse(); // a whole condition or value
    std::string List(); // separated by commas

private:
    using Rule = Expression (ExpressionParser::*)();

    Expression Disjunction();
    Expression Conjunction();
    Expression Negation();
    Expression Comparison();
    Expression Joining(); // &
    Expression Sum();
    Expression Modulo();
    Expression Quotient(); // whole-number division
    Expression Product();
    Expression Sign();
    Expression Power();
    Expression Primary();

    Expression Chain(Rule part, std::string_view word);
    Expression Compare(const Expression& left, const std::string& symbol);
    Expression Belongs(const Expression& left, bool inverted); // IN
    Expression Lies(const Expression& left, bool inverted);    // BETWEEN
    Expression Call(const Token& name);
    Expression Switch();
    Expression Column();
    Expression Parenthesised();

    TokenReader& lclReader;
    std::function<std::string()> lclSubquery;
    std::function<bool(std::string_view)> lclIsFlag;
    int lclDepth = 0;
};

} // namespace kavidex::data::embedded

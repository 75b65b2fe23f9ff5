// The expressions of the Access dialect.
#pragma once

#include <functional>
#include <string>

#include "data/embedded/Translator.h"

namespace kavidex::data::embedded {

// What an operator must know of its operands.
enum class Operand { Column, Text, Number, True, False, Other };

struct Expression {
    std::string text; // in SQLite
    Operand kind = Operand::Other;
};

class ExpressionParser {
public:
    // `subquery` translates a SELECT at the reader's place, without its parentheses.
    ExpressionParser(TokenReader& reader, std::function<std::string()> subquery)
        : lclReader(reader), lclSubquery(std::move(subquery)) {}

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
    Expression Column();
    Expression Parenthesised();

    TokenReader& lclReader;
    std::function<std::string()> lclSubquery;
    int lclDepth = 0;
};

} // namespace kavidex::data::embedded

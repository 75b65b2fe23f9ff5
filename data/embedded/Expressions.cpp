#include "data/embedded/Expressions.h"

#include "data/embedded/Functions.h"
#include "data/embedded/Types.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

constexpr int deepestNesting = 100;

bool IsTextual(Operand kind) {
    return kind == Operand::Text || kind == Operand::Date || kind == Operand::Other;
}

bool IsNumeric(Operand kind) { return kind == Operand::Number || kind == Operand::Whole; }

// Texts that come from no column compare without case as well, and as dates beside a date. Columns
// bring their collation; an explicit one beside a column would keep its index from being used.
std::string Collated(const Expression& left, const Expression& right) {
    if (!IsTextual(left.kind) || !IsTextual(right.kind)) return right.text;
    const bool dates = left.kind == Operand::Date || right.kind == Operand::Date;
    return right.text + " COLLATE " + (dates ? dateCollation : collation);
}

std::string CollatedAlone(const Expression& value) {
    if (!IsTextual(value.kind)) return value.text;
    return value.text + " COLLATE " + (value.kind == Operand::Date ? dateCollation : collation);
}

std::string AsWhole(const Expression& value) { return "kv_clng(" + value.text + ")"; }

} // namespace

Expression ExpressionParser::Parse() {
    if (++lclDepth > deepestNesting) lclReader.Refuse("nested too deeply");
    Expression result = Disjunction();
    --lclDepth;
    return result;
}

std::string ExpressionParser::List() {
    std::string list = Parse().text;
    while (lclReader.TakeSymbol(",")) list += ", " + Parse().text;
    return list;
}

Expression ExpressionParser::Chain(Rule part, std::string_view word) {
    Expression first = (this->*part)();
    if (!lclReader.PeekWord(word)) return first;
    std::string text = "(" + first.text;
    while (lclReader.TakeWord(word))
        text += " " + platform::UpperCase(word) + " " + (this->*part)().text;
    return {text + ")"};
}

Expression ExpressionParser::Disjunction() { return Chain(&ExpressionParser::Conjunction, "or"); }
Expression ExpressionParser::Conjunction() { return Chain(&ExpressionParser::Negation, "and"); }

Expression ExpressionParser::Negation() {
    if (!lclReader.TakeWord("not")) return Comparison();
    if (++lclDepth > deepestNesting) lclReader.Refuse("nested too deeply");
    const Expression inner = Negation();
    --lclDepth;
    return {"(NOT " + inner.text + ")"};
}

Expression ExpressionParser::Comparison() {
    Expression left = Joining();
    for (;;) {
        if (lclReader.TakeWord("is")) {
            const bool inverted = lclReader.TakeWord("not");
            lclReader.NeedWord("null");
            left = {"(" + left.text + (inverted ? " IS NOT NULL)" : " IS NULL)")};
            continue;
        }
        const bool inverted = lclReader.PeekWord("not") &&
                              (lclReader.PeekWord("like", 1) || lclReader.PeekWord("in", 1) ||
                               lclReader.PeekWord("between", 1));
        if (inverted) lclReader.Take();
        if (lclReader.TakeWord("like")) {
            const Expression pattern = Joining();
            left = {std::string(inverted ? "(NOT " : "(") + "kv_like(" + left.text + ", " +
                    pattern.text + "))"};
        } else if (lclReader.TakeWord("in")) {
            left = Belongs(left, inverted);
        } else if (lclReader.TakeWord("between")) {
            left = Lies(left, inverted);
        } else {
            bool found = false;
            for (const char* symbol : {"=", "<>", "<=", ">=", "<", ">"}) {
                if (!lclReader.TakeSymbol(symbol)) continue;
                left = Compare(left, symbol);
                found = true;
                break;
            }
            if (!found) return left;
        }
    }
}

// A comparison with True asks whether a number is not 0; to a yes/no column every such number is
// yes.
Expression ExpressionParser::Compare(const Expression& left, const std::string& symbol) {
    const Expression right = Joining();
    const bool equality = symbol == "=" || symbol == "<>";
    const bool leftFlag = left.kind == Operand::True || left.kind == Operand::False;
    const bool rightFlag = right.kind == Operand::True || right.kind == Operand::False;
    if (equality && leftFlag != rightFlag) {
        const bool yes = (leftFlag ? left : right).kind == Operand::True;
        const Expression& other = leftFlag ? right : left;
        return {"(" + other.text + (yes == (symbol == "=") ? " <> 0)" : " = 0)")};
    }
    const auto beside = [&](const Expression& value, const Expression& other) {
        return equality && value.kind == Operand::Whole && other.kind == Operand::Column &&
               lclIsFlag(other.text);
    };
    if (beside(right, left))
        return {"(" + left.text + " " + symbol + " " + AsStored(AdoType::Boolean, right) + ")"};
    if (beside(left, right))
        return {"(" + AsStored(AdoType::Boolean, left) + " " + symbol + " " + right.text + ")"};
    return {"(" + left.text + " " + symbol + " " + Collated(left, right) + ")"};
}

Expression ExpressionParser::Belongs(const Expression& left, bool inverted) {
    lclReader.NeedSymbol("(");
    const std::string list = lclReader.PeekWord("select") ? lclSubquery() : List();
    lclReader.NeedSymbol(")");
    return {"(" + CollatedAlone(left) + (inverted ? " NOT IN (" : " IN (") + list + "))"};
}

Expression ExpressionParser::Lies(const Expression& left, bool inverted) {
    const Expression low = Joining();
    lclReader.NeedWord("and");
    const Expression high = Joining();
    return {"(" + CollatedAlone(left) + (inverted ? " NOT BETWEEN " : " BETWEEN ") + low.text +
            " AND " + high.text + ")"};
}

Expression ExpressionParser::Joining() {
    Expression first = Sum();
    if (!lclReader.PeekSymbol("&")) return first;
    std::string text = "kv_concat(" + first.text;
    int arguments = 1;
    while (lclReader.TakeSymbol("&")) {
        if (++arguments > 100) { // as many as SQLite takes in one call
            text = "kv_concat(" + text + ")";
            arguments = 2;
        }
        text += ", " + Sum().text;
    }
    return {text + ")"};
}

Expression ExpressionParser::Sum() {
    Expression left = Modulo();
    for (;;) {
        const bool plus = lclReader.PeekSymbol("+");
        if (!plus && !lclReader.PeekSymbol("-")) return left;
        lclReader.Take();
        const Expression right = Modulo();
        const bool number = IsNumeric(left.kind) || IsNumeric(right.kind);
        if (plus && !number)
            left = {"kv_add(" + left.text + ", " + right.text + ")"};
        else
            left = {"(" + left.text + (plus ? " + " : " - ") + right.text + ")"};
    }
}

Expression ExpressionParser::Modulo() {
    Expression left = Quotient();
    while (lclReader.TakeWord("mod"))
        left = {"(" + AsWhole(left) + " % " + AsWhole(Quotient()) + ")"};
    return left;
}

Expression ExpressionParser::Quotient() {
    Expression left = Product();
    while (lclReader.TakeSymbol("\\"))
        left = {"(" + AsWhole(left) + " / " + AsWhole(Product()) + ")"};
    return left;
}

Expression ExpressionParser::Product() {
    Expression left = Sign();
    for (;;) {
        if (lclReader.TakeSymbol("*"))
            left = {"(" + left.text + " * " + Sign().text + ")"};
        else if (lclReader.TakeSymbol("/"))
            left = {"(kv_cdbl(" + left.text + ") / " + Sign().text + ")"};
        else
            return left;
    }
}

Expression ExpressionParser::Sign() {
    bool negative = false;
    bool any = false;
    while (lclReader.PeekSymbol("-") || lclReader.PeekSymbol("+")) {
        any = true;
        negative = negative != (lclReader.Take().text == "-");
    }
    Expression value = Power();
    if (!any) return value;
    const Operand kind = IsNumeric(value.kind) ? value.kind : Operand::Other;
    return {negative ? "(- " + value.text + ")" : "(+ " + value.text + ")", kind};
}

Expression ExpressionParser::Power() {
    Expression left = Primary();
    while (lclReader.TakeSymbol("^")) {
        const Expression right = lclReader.PeekSymbol("-") ? Sign() : Primary();
        left = {"kv_power(" + left.text + ", " + right.text + ")"};
    }
    return left;
}

Expression ExpressionParser::Primary() {
    const Token& token = lclReader.Peek();
    switch (token.kind) {
    case TokenKind::Text:
    case TokenKind::Date:
    case TokenKind::Whole:
    case TokenKind::Number: {
        const Operand kind = token.kind == TokenKind::Text    ? Operand::Text
                             : token.kind == TokenKind::Date  ? Operand::Date
                             : token.kind == TokenKind::Whole ? Operand::Whole
                                                              : Operand::Number;
        return {"?" + std::to_string(lclReader.Take().literal + 1), kind};
    }
    case TokenKind::Parameter: {
        const int number = lclReader.Literals() + lclReader.Take().literal + 1;
        return {"?" + std::to_string(number)};
    }
    case TokenKind::Identity: lclReader.Take(); return {"last_insert_rowid()"};
    case TokenKind::Symbol:
        if (lclReader.TakeSymbol("(")) return Parenthesised();
        lclReader.Refuse();
    case TokenKind::Name: return Column();
    case TokenKind::End: lclReader.Refuse("a value is missing");
    case TokenKind::Word: break;
    }
    if (lclReader.PeekSymbol("(", 1)) return Call(lclReader.Take());
    if (!lclReader.PeekSymbol(".", 1)) {
        if (lclReader.TakeWord("true")) return {"-1", Operand::True};
        if (lclReader.TakeWord("false")) return {"0", Operand::False};
        if (lclReader.TakeWord("null")) return {"NULL"};
    }
    return Column();
}

Expression ExpressionParser::Parenthesised() {
    Expression inner = lclReader.PeekWord("select") ? Expression{lclSubquery()} : Parse();
    lclReader.NeedSymbol(")");
    return {"(" + inner.text + ")", inner.kind};
}

Expression ExpressionParser::Column() {
    // "Order" is a column name of old files; it can only be one where no BY follows.
    const bool order = lclReader.PeekWord("order") && !lclReader.PeekWord("by", 1);
    std::string text = QuotedName(lclReader.NeedName(order));
    while (lclReader.PeekSymbol(".") && !lclReader.PeekSymbol("*", 1)) {
        lclReader.Take();
        text += "." + QuotedName(lclReader.NeedName(true));
    }
    return {text, Operand::Column};
}

Expression ExpressionParser::Call(const Token& name) {
    lclReader.NeedSymbol("(");
    if (platform::EqualAsciiNoCase(name.text, "exists")) {
        if (!lclReader.PeekWord("select")) lclReader.Refuse();
        const std::string query = lclSubquery();
        lclReader.NeedSymbol(")");
        return {"EXISTS (" + query + ")"};
    }
    if (platform::EqualAsciiNoCase(name.text, "switch")) return Switch();
    struct Moment {
        const char* word;
        const char* text;
    };
    static constexpr Moment moments[] = {
        {"now", "strftime('%Y-%m-%d %H:%M:%S', 'now', 'localtime')"},
        {"date", "strftime('%Y-%m-%d 00:00:00', 'now', 'localtime')"},
    };
    for (const Moment& moment : moments)
        if (platform::EqualAsciiNoCase(name.text, moment.word) && lclReader.TakeSymbol(")"))
            return {moment.text, Operand::Date};
    const Function* function = FunctionOfWord(name.text);
    if (!function)
        RefuseSyntax("the function '" + std::string(name.text) + "' is not known",
                     lclReader.Statement());
    std::string arguments;
    int count = 0;
    if (function->word == "count" && lclReader.TakeSymbol("*")) {
        arguments = "*";
        count = 1;
    } else {
        while (!lclReader.PeekSymbol(")")) {
            if (count++ > 0) {
                lclReader.NeedSymbol(",");
                arguments += ", ";
            }
            arguments += Parse().text;
        }
    }
    if (count < function->fewest || count > function->most)
        lclReader.Refuse("'" + std::string(name.text) + "' takes another number of values");
    lclReader.NeedSymbol(")");
    const bool date = function->name == "kv_date" || function->name == "kv_datevalue";
    return {std::string(function->name) + "(" + arguments + ")",
            date ? Operand::Date : Operand::Other};
}

// Pairs of a condition and a value; the first condition that holds gives its value.
Expression ExpressionParser::Switch() {
    std::string text = "CASE";
    do {
        text += " WHEN " + Parse().text;
        lclReader.NeedSymbol(",");
        text += " THEN " + Parse().text;
    } while (lclReader.TakeSymbol(","));
    lclReader.NeedSymbol(")");
    return {"(" + text + " END)"};
}

std::string AsStored(AdoType type, const Expression& value) {
    if (type == AdoType::Boolean) {
        const bool flag = value.kind == Operand::True || value.kind == Operand::False;
        return flag ? value.text : "kv_bit(" + value.text + ")";
    }
    if (IsWholeNumber(type) && value.kind != Operand::Whole) return "kv_whole(" + value.text + ")";
    if (type == AdoType::Date && value.kind != Operand::Date) return "kv_date(" + value.text + ")";
    return value.text;
}

} // namespace kavidex::data::embedded

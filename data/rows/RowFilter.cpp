#include <charconv>

#include "data/Error.h"
#include "data/rows/Like.h"
#include "data/rows/RowOrder.h"
#include "platform/text.h"

namespace kavidex::data {

namespace {

constexpr int deepestNesting = 100;

// Recursive descent over the criteria; each level answers a test of one row.
class FilterParser {
public:
    FilterParser(std::string_view text, const std::vector<Field>& fields, const RowStore& rows)
        : lclText(text), lclFields(fields), lclRows(rows) {}

    RowTest Parse() {
        RowTest test = Disjunction();
        SkipBlanks();
        if (lclAt != lclText.size()) Refuse();
        return test;
    }

private:
    [[noreturn]] void Refuse() const {
        throw Error(errors::invalidArgument,
                    "The filter '" + std::string(lclText) + "' is not understood at '" +
                        std::string(lclText.substr(lclAt, 40)) + "'.",
                    "Recordset");
    }

    void SkipBlanks() {
        while (lclAt < lclText.size() && static_cast<unsigned char>(lclText[lclAt]) <= ' ') ++lclAt;
    }

    static bool IsWord(char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || static_cast<unsigned char>(c) >= 0x80;
    }

    std::string_view PeekWord() {
        SkipBlanks();
        std::size_t end = lclAt;
        while (end < lclText.size() && IsWord(lclText[end])) ++end;
        return lclText.substr(lclAt, end - lclAt);
    }

    bool TakeWord(std::string_view word) {
        const std::string_view next = PeekWord();
        if (!platform::EqualAsciiNoCase(next, word)) return false;
        lclAt += next.size();
        return true;
    }

    bool Take(std::string_view symbol) {
        SkipBlanks();
        if (lclText.substr(lclAt, symbol.size()) != symbol) return false;
        lclAt += symbol.size();
        return true;
    }

    RowTest Disjunction() {
        RowTest left = Conjunction();
        while (TakeWord("or"))
            left = [a = std::move(left), b = Conjunction()](std::size_t row) {
                return a(row) || b(row);
            };
        return left;
    }

    RowTest Conjunction() {
        RowTest left = Condition();
        while (TakeWord("and"))
            left = [a = std::move(left), b = Condition()](std::size_t row) {
                return a(row) && b(row);
            };
        return left;
    }

    RowTest Condition() {
        if (++lclDepth > deepestNesting) Refuse();
        RowTest test;
        if (TakeWord("not")) {
            test = [inner = Condition()](std::size_t row) { return !inner(row); };
        } else if (Take("(")) {
            test = Disjunction();
            if (!Take(")")) Refuse();
        } else {
            test = Comparison();
        }
        --lclDepth;
        return test;
    }

    std::size_t FieldName() {
        std::string_view name;
        if (Take("[")) {
            const std::size_t close = lclText.find(']', lclAt);
            if (close == std::string_view::npos) Refuse();
            name = lclText.substr(lclAt, close - lclAt);
            lclAt = close + 1;
        } else {
            name = PeekWord();
            if (name.empty()) Refuse();
            lclAt += name.size();
        }
        for (std::size_t i = 0; i < lclFields.size(); ++i)
            if (platform::EqualAsciiNoCase(lclFields[i].name, name)) return i;
        throw Error(errors::itemNotFound, "The recordset has no field '" + std::string(name) + "'.",
                    "Recordset");
    }

    std::string Quoted(char quote) {
        std::string text;
        for (++lclAt;; ++lclAt) {
            if (lclAt >= lclText.size()) Refuse();
            if (lclText[lclAt] == quote) {
                if (quote == '#' || lclText.substr(lclAt + 1, 1) != std::string_view(&quote, 1))
                    break;
                ++lclAt;
            }
            text += lclText[lclAt];
        }
        ++lclAt;
        return text;
    }

    Value Literal() {
        SkipBlanks();
        if (lclAt >= lclText.size()) Refuse();
        const char first = lclText[lclAt];
        if (first == '\'' || first == '"' || first == '#') return Quoted(first);
        if (TakeWord("null")) return {};
        if (TakeWord("true")) return true;
        if (TakeWord("false")) return false;
        const char* begin = lclText.data() + lclAt;
        const char* end = lclText.data() + lclText.size();
        double number = 0;
        const auto result = std::from_chars(begin, end, number);
        if (result.ec != std::errc() || result.ptr == begin) Refuse();
        lclAt += static_cast<std::size_t>(result.ptr - begin);
        return number;
    }

    RowTest Comparison() {
        const std::size_t column = FieldName();
        if (TakeWord("is")) {
            const bool inverted = TakeWord("not");
            if (!TakeWord("null")) Refuse();
            return NullTest(column, inverted);
        }
        if (TakeWord("like")) return LikeTest(column, ToText(Literal()));
        struct Operator {
            const char* symbol;
            bool below, equal, above;
        };
        static constexpr Operator operators[] = {
            {"<=", true, true, false}, {">=", false, true, true}, {"<>", true, false, true},
            {"=", false, true, false}, {"<", true, false, false}, {">", false, false, true},
        };
        for (const Operator& candidate : operators) {
            if (!Take(candidate.symbol)) continue;
            const Value value = Literal();
            if (IsNull(value)) {
                if (candidate.below != candidate.above) Refuse();
                return NullTest(column, !candidate.equal);
            }
            return OrderTest(column, value, candidate.below, candidate.equal, candidate.above);
        }
        Refuse();
    }

    RowTest NullTest(std::size_t column, bool inverted) const {
        return [&rows = lclRows, column, inverted](std::size_t row) {
            return (rows.At(row, column).kind == RowStore::Kind::Null) != inverted;
        };
    }

    RowTest LikeTest(std::size_t column, std::string pattern) const {
        return [&rows = lclRows, column, pattern = std::move(pattern)](std::size_t row) {
            const Value value = rows.Read(row, column);
            return !IsNull(value) && LikeMatch(pattern, ToText(value));
        };
    }

    // The literal takes the form of the row's value: '5' meets a number as 5.
    RowTest OrderTest(std::size_t column, const Value& value, bool below, bool equal,
                      bool above) const {
        return [&rows = lclRows, column, text = Value(ToText(value)),
                number = Value(ToDouble(value)), below, equal, above](std::size_t row) {
            const RowStore::Kind kind = rows.At(row, column).kind;
            if (kind == RowStore::Kind::Null) return false;
            RowStore pair(1);
            pair.Add(rows.Read(row, column));
            pair.Add(kind == RowStore::Kind::Text ? text : number);
            const int order = CompareCells(pair, pair.At(0, 0), pair.At(1, 0));
            return order < 0 ? below : order == 0 ? equal : above;
        };
    }

    std::string_view lclText;
    const std::vector<Field>& lclFields;
    const RowStore& lclRows;
    std::size_t lclAt = 0;
    int lclDepth = 0;
};

} // namespace

RowTest ParseFilter(std::string_view criteria, const std::vector<Field>& fields,
                    const RowStore& rows) {
    return FilterParser(criteria, fields, rows).Parse();
}

} // namespace kavidex::data

#include "data/embedded/Translator.h"

#include "data/embedded/Expressions.h"
#include "data/embedded/Types.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

constexpr int deepestNesting = 30;

// SELECT, INSERT, UPDATE and DELETE.
class StatementParser {
public:
    explicit StatementParser(TokenReader& reader)
        : lclReader(reader), lclExpressions(reader, [this] { return Query(); }) {}

    std::string Query() { // selects joined by UNION, then the order
        if (++lclDepth > deepestNesting) lclReader.Refuse("nested too deeply");
        std::string limit;
        std::string text = Select(limit);
        while (lclReader.TakeWord("union")) {
            text += lclReader.TakeWord("all") ? " UNION ALL " : " UNION ";
            text += Select(limit);
        }
        if (lclReader.PeekWord("order") && lclReader.PeekWord("by", 1)) {
            lclReader.Take();
            lclReader.Take();
            text += " ORDER BY " + Order();
        }
        --lclDepth;
        return text + limit;
    }

    std::string Insert() {
        lclReader.NeedWord("into");
        std::string text = "INSERT INTO " + QuotedName(lclReader.NeedTable());
        if (lclReader.TakeSymbol("(")) {
            text += " (" + QuotedName(lclReader.NeedName(true));
            while (lclReader.TakeSymbol(",")) text += ", " + QuotedName(lclReader.NeedName(true));
            lclReader.NeedSymbol(")");
            text += ")";
        }
        if (lclReader.PeekWord("select")) return text + " " + Query();
        lclReader.NeedWord("values");
        lclReader.NeedSymbol("(");
        text += " VALUES (" + lclExpressions.List() + ")";
        lclReader.NeedSymbol(")");
        return text;
    }

    std::string Update() {
        std::string text = "UPDATE " + QuotedName(lclReader.NeedTable());
        lclReader.NeedWord("set");
        const char* separator = " SET ";
        do {
            std::string_view column = lclReader.NeedName(true);
            if (lclReader.TakeSymbol(".")) column = lclReader.NeedName(true);
            lclReader.NeedSymbol("=");
            text += separator + QuotedName(column) + " = " + lclExpressions.Parse().text;
            separator = ", ";
        } while (lclReader.TakeSymbol(","));
        return text + Where();
    }

    std::string Delete() {
        if (!lclReader.TakeSymbol("*") && !lclReader.PeekWord("from")) {
            lclReader.NeedName(false);
            lclReader.NeedSymbol(".");
            lclReader.NeedSymbol("*");
        }
        lclReader.NeedWord("from");
        const std::string text = "DELETE FROM " + QuotedName(lclReader.NeedTable());
        return text + Where();
    }

    bool Fixed() const { return lclFixed; }

private:
    std::string Select(std::string& limit) {
        lclReader.NeedWord("select");
        std::string text = "SELECT ";
        if (lclReader.TakeWord("distinct") || lclReader.TakeWord("distinctrow"))
            text += "DISTINCT ";
        else
            lclReader.TakeWord("all");
        if (lclReader.PeekWord("top") && lclReader.Peek(1).kind == TokenKind::Whole) {
            lclReader.Take();
            limit = " LIMIT " + std::string(lclReader.Take().text);
            lclFixed = true;
        }
        text += Item(0);
        for (int number = 1; lclReader.TakeSymbol(","); ++number) text += ", " + Item(number);
        if (lclReader.TakeWord("from")) text += " FROM " + Tables();
        text += Where();
        if (lclReader.PeekWord("group") && lclReader.PeekWord("by", 1)) {
            lclReader.Take();
            lclReader.Take();
            text += " GROUP BY " + lclExpressions.List();
            if (lclReader.TakeWord("having")) text += " HAVING " + lclExpressions.Parse().text;
        }
        return text;
    }

    // One column of the result; values without a name are called by their number, from 1000 on.
    std::string Item(int number) {
        if (lclReader.TakeSymbol("*")) return "*";
        const bool table = lclReader.PeekSymbol(".", 1) && lclReader.PeekSymbol("*", 2);
        if (table) {
            const std::string name = QuotedName(lclReader.NeedName(false));
            lclReader.Take();
            lclReader.Take();
            return name + ".*";
        }
        const Expression value = lclExpressions.Parse();
        if (lclReader.TakeWord("as")) {
            const std::string alias = QuotedName(lclReader.NeedName(true));
            return value.text + " AS " + alias;
        }
        if (value.kind == Operand::Column) return value.text;
        return value.text + " AS " + QuotedName("Expr" + std::to_string(1000 + number));
    }

    std::string Tables() {
        std::string text = JoinedTables();
        while (lclReader.TakeSymbol(",")) text += ", " + JoinedTables();
        return text;
    }

    std::string JoinedTables() {
        if (++lclDepth > deepestNesting) lclReader.Refuse("nested too deeply");
        std::string text = Table();
        for (;;) {
            const bool left = lclReader.PeekWord("left"), right = lclReader.PeekWord("right");
            if (left || right) {
                lclReader.Take();
                lclReader.TakeWord("outer");
            } else if (!lclReader.TakeWord("inner")) {
                break;
            }
            lclReader.NeedWord("join");
            text += (left ? " LEFT JOIN " : right ? " RIGHT JOIN " : " JOIN ") + Table();
            lclReader.NeedWord("on");
            text += " ON " + lclExpressions.Parse().text;
        }
        --lclDepth;
        return text;
    }

    std::string Table() {
        std::string text;
        if (lclReader.TakeSymbol("(")) {
            text = "(" + (lclReader.PeekWord("select") ? Query() : JoinedTables()) + ")";
            lclReader.NeedSymbol(")");
        } else {
            text = QuotedName(lclReader.NeedTable());
        }
        const Token& next = lclReader.Peek();
        const bool alias = next.kind == TokenKind::Name ||
                           (next.kind == TokenKind::Word && !IsReserved(next.text));
        if (lclReader.TakeWord("as") || alias)
            text += " AS " + QuotedName(lclReader.NeedName(false));
        return text;
    }

    std::string Where() {
        return lclReader.TakeWord("where") ? " WHERE " + lclExpressions.Parse().text : "";
    }

    std::string Order() {
        std::string text;
        do {
            if (!text.empty()) text += ", ";
            if (lclReader.Peek().kind == TokenKind::Whole) { // the number of a result column
                text += lclReader.Take().text;
                lclFixed = true;
            } else {
                const Expression value = lclExpressions.Parse();
                text += value.text;
                if (value.kind == Operand::Other) text += std::string(" COLLATE ") + collation;
            }
            if (lclReader.TakeWord("desc"))
                text += " DESC";
            else
                lclReader.TakeWord("asc");
        } while (lclReader.TakeSymbol(","));
        return text;
    }

    TokenReader& lclReader;
    ExpressionParser lclExpressions;
    int lclDepth = 0;
    bool lclFixed = false;
};

} // namespace

Translation Translate(std::string_view statement) {
    TokenReader reader(statement);
    if (reader.PeekWord("create") || reader.PeekWord("alter") || reader.PeekWord("drop"))
        return TranslateDefinition(reader);
    StatementParser parser(reader);
    Translation result;
    if (reader.PeekWord("select"))
        result.statements = {parser.Query()};
    else if (reader.TakeWord("insert"))
        result.statements = {parser.Insert()};
    else if (reader.TakeWord("update"))
        result.statements = {parser.Update()};
    else if (reader.TakeWord("delete"))
        result.statements = {parser.Delete()};
    else
        reader.Refuse("no statement of this dialect");
    reader.NeedEnd();
    result.fixed = parser.Fixed();
    return result;
}

} // namespace kavidex::data::embedded

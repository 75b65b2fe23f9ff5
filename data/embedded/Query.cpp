#include "data/embedded/Query.h"

#include <charconv>

#include "data/embedded/Types.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

constexpr int deepestNesting = 30;

bool EndsTable(std::string_view word) {
    return IsReserved(word) || platform::EqualAsciiNoCase(word, "set");
}

} // namespace

QueryParser::QueryParser(TokenReader& reader, const ColumnsOfTable& columns)
    : lclReader(reader), lclColumns(columns),
      lclExpressions(
          reader, [this] { return Query(); },
          [this](std::string_view column) { return IsFlag(column); }) {}

// Selects joined by UNION, then the order. With `ties` the rows that are equal to the last are
// its caller's to find; without, TOP ends at its number.
std::string QueryParser::Query(Ties* ties) {
    if (++lclDepth > deepestNesting) lclReader.Refuse("nested too deeply");
    Selection selection = Select();
    std::string unions;
    while (lclReader.TakeWord("union")) {
        unions += lclReader.TakeWord("all") ? " UNION ALL " : " UNION ";
        const Selection next = Select();
        unions += next.items + next.rest;
        if (next.top >= 0) selection.top = next.top;
        selection.plain = false;
    }
    std::string order;
    const bool ordered = lclReader.PeekWord("order") && lclReader.PeekWord("by", 1);
    if (ordered) {
        lclReader.Take();
        lclReader.Take();
        const bool open = ties && selection.top > 0 && selection.plain;
        order = " ORDER BY " + Order(selection, open ? ties : nullptr);
        if (open) ties->rows = selection.top;
    }
    --lclDepth;
    std::string text = selection.items + selection.hidden + selection.rest + unions + order;
    const bool open = ties && ties->rows > 0;
    if (selection.top >= 0 && !open) text += " LIMIT " + std::to_string(selection.top);
    return text;
}

QueryParser::Selection QueryParser::Select() {
    Selection selection;
    lclReader.NeedWord("select");
    selection.items = "SELECT ";
    if (lclReader.TakeWord("distinct") || lclReader.TakeWord("distinctrow")) {
        selection.items += "DISTINCT ";
        selection.plain = false;
    } else {
        lclReader.TakeWord("all");
    }
    if (lclReader.PeekWord("top") && lclReader.Peek(1).kind == TokenKind::Whole) {
        lclReader.Take();
        const std::string_view digits = lclReader.Peek().text;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), selection.top).ec !=
            std::errc())
            lclReader.Refuse("a number that is too large");
        lclReader.Take();
        lclFixed = true;
    }
    selection.items += Item(0, selection);
    for (int number = 1; lclReader.TakeSymbol(","); ++number)
        selection.items += ", " + Item(number, selection);
    std::string& text = selection.rest;
    if (lclReader.TakeWord("from")) text += " FROM " + Tables();
    text += Where();
    if (lclReader.PeekWord("group") && lclReader.PeekWord("by", 1)) {
        lclReader.Take();
        lclReader.Take();
        text += " GROUP BY " + lclExpressions.List();
        if (lclReader.TakeWord("having")) text += " HAVING " + lclExpressions.Parse().text;
    }
    return selection;
}

// One column of the result; values without a name are called by their number, from 1000 on.
std::string QueryParser::Item(int number, Selection& selection) {
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
        selection.aliases.emplace_back(alias, value.text);
        return value.text + " AS " + alias;
    }
    if (value.kind == Operand::Column) return value.text;
    return value.text + " AS " + QuotedName("Expr" + std::to_string(1000 + number));
}

std::string QueryParser::Tables() {
    std::string text = JoinedTables();
    while (lclReader.TakeSymbol(",")) text += ", " + JoinedTables();
    return text;
}

std::string QueryParser::JoinedTables() {
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

std::string QueryParser::Table() {
    std::string text;
    Source source;
    if (lclReader.TakeSymbol("(")) {
        if (lclReader.PeekWord("select")) {
            const std::size_t outside = lclSources.size();
            text = "(" + Query() + ")";
            lclSources.resize(outside); // its tables are not the statement's
            lclDerived = true;
        } else {
            text = "(" + JoinedTables() + ")";
        }
        lclReader.NeedSymbol(")");
    } else {
        source.table = lclReader.NeedTable();
        text = QuotedName(source.table);
    }
    const Token& next = lclReader.Peek();
    const bool alias =
        next.kind == TokenKind::Name || (next.kind == TokenKind::Word && !EndsTable(next.text));
    if (lclReader.TakeWord("as") || alias) {
        source.alias = lclReader.NeedName(false);
        text += " AS " + QuotedName(source.alias);
    }
    if (!source.table.empty()) lclSources.push_back(source);
    return text;
}

std::string QueryParser::Where() {
    return lclReader.TakeWord("where") ? " WHERE " + lclExpressions.Parse().text : "";
}

std::string QueryParser::Order(Selection& selection, Ties* ties) {
    std::string text;
    do {
        if (!text.empty()) text += ", ";
        if (lclReader.Peek().kind == TokenKind::Whole) { // the number of a result column
            const std::string number(lclReader.Take().text);
            text += number;
            lclFixed = true;
            if (ties) ties->compared.push_back(number.size() > 4 ? 0 : std::stoi(number) - 1);
        } else {
            const Expression value = lclExpressions.Parse();
            text += value.text;
            if (value.kind == Operand::Other) text += std::string(" COLLATE ") + collation;
            if (ties) Compare(selection, *ties, value.text);
        }
        if (lclReader.TakeWord("desc"))
            text += " DESC";
        else
            lclReader.TakeWord("asc");
    } while (lclReader.TakeSymbol(","));
    return text;
}

// One more column, hidden behind the others; a name given to a value stands for the value.
void QueryParser::Compare(Selection& selection, Ties& ties, std::string value) {
    for (const auto& [alias, meant] : selection.aliases)
        if (platform::EqualNoCase(alias, value)) value = meant;
    selection.hidden += ", " + value;
    ties.compared.push_back(-++ties.hidden);
}

// Among the tables that were read so far; false where it could be of more than one.
bool QueryParser::IsFlag(std::string_view column) const {
    int flags = 0, others = 0;
    for (const Source& source : lclColumns ? lclSources : std::vector<Source>()) {
        const std::string owner =
            QuotedName(source.alias.empty() ? source.table : source.alias) + ".";
        for (const TableColumn& known : lclColumns(source.table)) {
            const std::string name = QuotedName(known.name);
            if (platform::EqualNoCase(column, name) || platform::EqualNoCase(column, owner + name))
                ++(known.type == AdoType::Boolean ? flags : others);
        }
    }
    return flags > 0 && others == 0;
}

} // namespace kavidex::data::embedded

#include "data/embedded/Translator.h"

#include <charconv>
#include <utility>

#include "data/embedded/Expressions.h"
#include "data/embedded/Types.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

constexpr int deepestNesting = 30;

// Columns named twice would leave it open which value is meant.
class ColumnList {
public:
    std::string_view Add(TokenReader& reader, std::string_view column) {
        for (const std::string_view other : lclNames)
            if (platform::EqualNoCase(other, column))
                reader.Refuse("the column '" + std::string(column) +
                              "' is named twice, the second");
        lclNames.push_back(column);
        return column;
    }
    const std::vector<std::string_view>& Names() const { return lclNames; }

private:
    std::vector<std::string_view> lclNames;
};

// SELECT, INSERT, UPDATE and DELETE.
class StatementParser {
public:
    StatementParser(TokenReader& reader, const ColumnsOfTable& columns)
        : lclReader(reader), lclColumns(columns),
          lclExpressions(
              reader, [this] { return Query(); },
              [this](std::string_view column) { return IsFlag(column); }) {}

    // Selects joined by UNION, then the order. With `ties` the rows that are equal to the last are
    // its caller's to find; without, TOP ends at its number.
    std::string Query(Ties* ties = nullptr) {
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

    std::string Insert() {
        lclReader.NeedWord("into");
        const std::string_view table = lclReader.NeedTable();
        std::string text = "INSERT INTO " + QuotedName(table);
        std::vector<AdoType> types;
        if (lclReader.TakeSymbol("(")) {
            ColumnList list;
            do {
                text += list.Names().empty() ? " (" : ", ";
                text += QuotedName(list.Add(lclReader, lclReader.NeedName(true)));
            } while (lclReader.TakeSymbol(","));
            lclReader.NeedSymbol(")");
            text += ")";
            types = TypesOf(table, list.Names());
        } else if (lclColumns) {
            for (const TableColumn& column : lclColumns(table)) types.push_back(column.type);
        }
        if (lclReader.PeekWord("select")) return text + " " + StoredRows(Query(), types);
        lclReader.NeedWord("values");
        lclReader.NeedSymbol("(");
        text += " VALUES (";
        std::size_t at = 0;
        do {
            const Expression value = lclExpressions.Parse();
            if (at > 0) text += ", ";
            text += at < types.size() ? AsStored(types[at], value) : value.text;
            ++at;
        } while (lclReader.TakeSymbol(","));
        lclReader.NeedSymbol(")");
        return text + ")";
    }

    std::string Update() {
        const std::string tables = Tables();
        const std::vector<Source> sources = lclSources;
        const bool derived = lclDerived;
        if (sources.empty()) lclReader.Refuse("only a table can be changed");
        lclReader.NeedWord("set");
        ColumnList list;
        std::string_view owner; // as the assignments name the table
        std::vector<Expression> values;
        do {
            std::string_view column = lclReader.NeedName(true);
            if (lclReader.TakeSymbol(".")) {
                owner = column;
                column = lclReader.NeedName(true);
            }
            list.Add(lclReader, column);
            lclReader.NeedSymbol("=");
            values.push_back(lclExpressions.Parse());
        } while (lclReader.TakeSymbol(","));
        const std::string where = Where();
        const Source& target = Target(sources, owner, list.Names().front());
        const std::vector<AdoType> types = TypesOf(target.table, list.Names());
        std::string joined, text = "UPDATE " + QuotedName(target.table) + " SET ";
        const bool plain = sources.size() == 1 && target.alias.empty() && !derived;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::string value = AsStored(types[i], values[i]);
            const std::string name = QuotedName("value" + std::to_string(i));
            if (i > 0) text += ", ";
            text += QuotedName(list.Names()[i]) + " = " + (plain ? value : "kv_new." + name);
            joined += ", " + value + " AS " + name;
        }
        if (plain) return text + where;
        // The rows of the join are found first, then the target's are written.
        return text + " FROM (SELECT " +
               QuotedName(target.alias.empty() ? target.table : target.alias) +
               ".rowid AS \"row\"" + joined + " FROM " + tables + where + ") AS kv_new WHERE " +
               QuotedName(target.table) + ".rowid = kv_new.\"row\"";
    }

    std::string Delete() {
        if (!lclReader.TakeSymbol("*") && !lclReader.PeekWord("from")) {
            lclReader.NeedName(false);
            lclReader.NeedSymbol(".");
            lclReader.NeedSymbol("*");
        }
        lclReader.NeedWord("from");
        lclSources.push_back({std::string(lclReader.NeedTable()), {}});
        const std::string text = "DELETE FROM " + QuotedName(lclSources.back().table);
        return text + Where();
    }

    bool Fixed() const { return lclFixed; }

private:
    struct Selection {
        std::string items, hidden, rest; // hidden: columns that are there to be compared
        int top = -1;
        bool plain = true; // neither DISTINCT nor one of a union: columns can be added
        std::vector<std::pair<std::string, std::string>> aliases; // of values, as they are written
    };
    struct Source { // a table that the statement reads
        std::string table, alias;
    };

    std::vector<AdoType> TypesOf(std::string_view table,
                                 const std::vector<std::string_view>& names) const {
        std::vector<AdoType> types(names.size(), AdoType::Empty);
        if (!lclColumns) return types;
        const std::vector<TableColumn> columns = lclColumns(table);
        for (std::size_t i = 0; i < names.size(); ++i)
            for (const TableColumn& column : columns)
                if (platform::EqualNoCase(column.name, names[i])) types[i] = column.type;
        return types;
    }

    // Among the tables that were read so far; false where it could be of more than one.
    bool IsFlag(std::string_view column) const {
        int flags = 0, others = 0;
        for (const Source& source : lclColumns ? lclSources : std::vector<Source>()) {
            const std::string owner =
                QuotedName(source.alias.empty() ? source.table : source.alias) + ".";
            for (const TableColumn& known : lclColumns(source.table)) {
                const std::string name = QuotedName(known.name);
                if (platform::EqualNoCase(column, name) ||
                    platform::EqualNoCase(column, owner + name))
                    ++(known.type == AdoType::Boolean ? flags : others);
            }
        }
        return flags > 0 && others == 0;
    }

    // The rows of a query, brought into the form of the columns that take them.
    static std::string StoredRows(const std::string& query, const std::vector<AdoType>& types) {
        std::string names, values;
        bool any = false;
        for (std::size_t i = 0; i < types.size(); ++i) {
            const Expression name{QuotedName("value" + std::to_string(i)), Operand::Column};
            const std::string value = AsStored(types[i], name);
            any = any || value != name.text;
            names += (i > 0 ? ", " : "") + name.text;
            values += (i > 0 ? ", " : "") + value;
        }
        if (!any) return query;
        return "WITH kv_rows (" + names + ") AS (" + query + ") SELECT " + values + " FROM kv_rows";
    }

    const Source& Target(const std::vector<Source>& sources, std::string_view owner,
                         std::string_view column) const {
        if (sources.size() == 1) return sources.front();
        const Source* found = nullptr;
        for (const Source& source : sources) {
            bool fits =
                platform::EqualNoCase(source.alias.empty() ? source.table : source.alias, owner);
            if (owner.empty() && lclColumns)
                for (const TableColumn& known : lclColumns(source.table))
                    fits = fits || platform::EqualNoCase(known.name, column);
            if (fits && found) lclReader.Refuse("it is not clear which table is changed");
            if (fits) found = &source;
        }
        if (!found) lclReader.Refuse("the table that is changed is not among those joined");
        return *found;
    }

    Selection Select() {
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
    std::string Item(int number, Selection& selection) {
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

    static bool EndsTable(std::string_view word) {
        return IsReserved(word) || platform::EqualAsciiNoCase(word, "set");
    }

    std::string Where() {
        return lclReader.TakeWord("where") ? " WHERE " + lclExpressions.Parse().text : "";
    }

    std::string Order(Selection& selection, Ties* ties) {
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
    static void Compare(Selection& selection, Ties& ties, std::string value) {
        for (const auto& [alias, meant] : selection.aliases)
            if (platform::EqualNoCase(alias, value)) value = meant;
        selection.hidden += ", " + value;
        ties.compared.push_back(-++ties.hidden);
    }

    TokenReader& lclReader;
    const ColumnsOfTable& lclColumns;
    ExpressionParser lclExpressions;
    std::vector<Source> lclSources;
    bool lclDerived = false; // a query stands where a table can
    int lclDepth = 0;
    bool lclFixed = false;
};

} // namespace

Translation Translate(std::string_view statement, const ColumnsOfTable& columns) {
    TokenReader reader(statement);
    if (reader.PeekWord("create") || reader.PeekWord("alter") || reader.PeekWord("drop"))
        return TranslateDefinition(reader);
    StatementParser parser(reader, columns);
    Translation result;
    if (reader.PeekWord("select"))
        result.statements = {parser.Query(&result.ties)};
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

#include "data/embedded/Translator.h"

#include <utility>

#include "data/embedded/Query.h"
#include "data/embedded/Types.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

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

// INSERT, UPDATE and DELETE.
class ChangeParser {
public:
    ChangeParser(TokenReader& reader, const ColumnsOfTable& columns, QueryParser& query)
        : lclReader(reader), lclColumns(columns), lclQuery(query) {}

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
        if (lclReader.PeekWord("select")) return text + " " + StoredRows(lclQuery.Query(), types);
        lclReader.NeedWord("values");
        lclReader.NeedSymbol("(");
        text += " VALUES (";
        std::size_t at = 0;
        do {
            const Expression value = lclQuery.Value();
            if (at > 0) text += ", ";
            text += at < types.size() ? AsStored(types[at], value) : value.text;
            ++at;
        } while (lclReader.TakeSymbol(","));
        lclReader.NeedSymbol(")");
        return text + ")";
    }

    std::string Update() {
        const std::string tables = lclQuery.Tables();
        const std::vector<Source> sources = lclQuery.Sources();
        const bool derived = lclQuery.Derived();
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
            values.push_back(lclQuery.Value());
        } while (lclReader.TakeSymbol(","));
        const std::string where = lclQuery.Where();
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
        const std::string_view table = lclReader.NeedTable();
        lclQuery.Reads({std::string(table), {}});
        return "DELETE FROM " + QuotedName(table) + lclQuery.Where();
    }

private:
    using Source = QueryParser::Source;

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

    TokenReader& lclReader;
    const ColumnsOfTable& lclColumns;
    QueryParser& lclQuery;
};

} // namespace

Translation Translate(std::string_view statement, const ColumnsOfTable& columns) {
    TokenReader reader(statement);
    if (reader.PeekWord("create") || reader.PeekWord("alter") || reader.PeekWord("drop"))
        return TranslateDefinition(reader);
    QueryParser query(reader, columns);
    ChangeParser change(reader, columns, query);
    Translation result;
    if (reader.PeekWord("select"))
        result.statements = {query.Query(&result.ties)};
    else if (reader.TakeWord("insert"))
        result.statements = {change.Insert()};
    else if (reader.TakeWord("update"))
        result.statements = {change.Update()};
    else if (reader.TakeWord("delete"))
        result.statements = {change.Delete()};
    else
        reader.Refuse("no statement of this dialect");
    reader.NeedEnd();
    result.fixed = query.Fixed();
    return result;
}

} // namespace kavidex::data::embedded

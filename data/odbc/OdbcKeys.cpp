#include "data/odbc/OdbcKeys.h"

#include "data/Error.h"
#include "data/odbc/OdbcStatement.h"
#include "data/odbc/Wide.h"
#include "platform/text.h"

namespace kavidex::data::odbc {

namespace {

// A driver without such a function: its rows are readable, not writable.
bool CannotTell(const platform::Error& error) {
    return error.Source() == "ODBC IM001" || error.Source() == "ODBC HYC00";
}

OdbcLink::Keys ReadKeys(const LinkPtr& link, const std::string& table) {
    std::u16string name = platform::ToUtf16(table);
    OdbcLink::Keys keys;
    try {
        OdbcStatement statement(link);
        statement.RunCatalog("SQLPrimaryKeys", [&](SQLHSTMT handle) {
            return SQLPrimaryKeysW(handle, nullptr, 0, nullptr, 0, Raw(name),
                                   Length<SQLSMALLINT>(name));
        });
        statement.Describe();
        const RowStore rows = statement.FetchAll();
        constexpr std::size_t columnName = 3;
        for (std::size_t i = 0; i < rows.Rows(); ++i)
            keys.insert(platform::LowerCase(ToText(rows.Read(i, columnName))));
    } catch (const platform::Error& error) {
        if (!CannotTell(error)) throw;
        link->ForgetErrors();
    }
    return keys;
}

// True when any field is part of its table's key.
bool MarkByTable(const LinkPtr& link, std::vector<Field>& fields) {
    bool any = false;
    for (Field& field : fields) {
        field.key = false;
        if (field.baseTable.empty()) continue;
        auto known = link->KnownKeys().find(field.baseTable);
        if (known == link->KnownKeys().end())
            known =
                link->KnownKeys().emplace(field.baseTable, ReadKeys(link, field.baseTable)).first;
        field.key = known->second.count(platform::LowerCase(field.baseColumn)) > 0;
        any = any || field.key;
    }
    return any;
}

bool MarkAllOf(const LinkPtr& link, const std::string& table, std::vector<Field>& fields) {
    for (Field& field : fields) {
        field.baseTable = table;
        field.baseColumn = field.name;
    }
    return MarkByTable(link, fields);
}

// A plain statement over one table leaves no doubt where its columns come from; the driver may know
// that table in another case. Otherwise each column is what the driver says.
void Mark(const LinkPtr& link, const Origins& origins, std::vector<Field>& fields) {
    if (!origins.table.empty()) {
        if (MarkAllOf(link, origins.table, fields) || origins.columns.empty()) return;
        const std::string& known = origins.columns[0].table;
        if (platform::EqualAsciiNoCase(known, origins.table) && MarkAllOf(link, known, fields))
            return;
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Origins::Base& base = origins.columns[i];
        if (base.table.empty() || base.column.empty()) continue; // some drivers name no base
        fields[i].baseTable = base.table;
        fields[i].baseColumn = base.column;
    }
    MarkByTable(link, fields);
}

} // namespace

std::string MarkKeys(const LinkPtr& link, const Origins& origins, std::vector<Field>& fields) {
    try {
        Mark(link, origins, fields);
        return {};
    } catch (const platform::Error& error) {
        return error.what();
    }
}

} // namespace kavidex::data::odbc

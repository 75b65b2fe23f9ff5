#include "data/transfer/Installation.h"

#include <algorithm>
#include <map>
#include <set>

#include "data/Error.h"
#include "data/modData.h"
#include "data/schema/upgradeSteps.h"
#include "platform/text.h"

namespace kavidex::data::transfer {

namespace {

using platform::LowerCase;

schema::Dialect DialectOf(const ConnectionPtr& connection) {
    if (IsAccessConnection(connection)) return schema::Dialect::Access;
    if (IsMySqlConnection(connection)) return schema::Dialect::MySql;
    const std::string name = ToText(connection->Property("DBMS Name"));
    if (LowerCase(name).find("sql server") == std::string::npos)
        throw Error(errors::featureNotAvailable,
                    "A database of \"" + name +
                        "\" cannot hold dossiers: Access, SQL Server, MySQL and the embedded "
                        "engine can.",
                    "Kavidex");
    return schema::Dialect::SqlServer;
}

std::string_view OwnIdOf(const schema::Table& table) {
    for (const schema::Column& column : table.columns)
        if (column.type == schema::ColumnType::OwnId) return column.name;
    return {};
}

// Of the current version, without columns.
std::vector<InstalledTable> SystemTables() {
    std::vector<InstalledTable> tables;
    for (const SchemaPart& part : SchemaParts())
        if (part.kind == SchemaPart::Kind::Table) tables.push_back({part.table, "Id", {}, {}});
    for (const schema::Table& base : schema::Tables())
        for (InstalledTable& table : tables)
            if (table.name == base.name) {
                table.key = base.key;
                table.ownId = OwnIdOf(base);
            }
    std::stable_partition(tables.begin(), tables.end(),
                          [](const auto& table) { return table.name != "tblSettings"; });
    return tables;
}

std::string NameAt(const Recordset& rows, std::string_view column) {
    return platform::Trim(ToText(rows.Get(column)));
}

} // namespace

bool InstalledTable::HasColumn(std::string_view column) const {
    return std::any_of(columns.begin(), columns.end(), [&](const std::string& own) {
        return platform::EqualAsciiNoCase(own, column);
    });
}

Installation::Installation(ConnectionPtr connection)
    : lclConnection(std::move(connection)), lclDialect(DialectOf(lclConnection)) {
    Refresh();
}

void Installation::Refresh() {
    std::set<std::string> names; // views have columns too
    std::map<std::string, std::string> written;
    const RecordsetPtr tables = lclConnection->OpenSchema(Schema::Tables);
    for (; !tables->Eof(); tables->MoveNext()) {
        if (LowerCase(NameAt(*tables, "TABLE_TYPE")) != "table") continue;
        const std::string name = NameAt(*tables, "TABLE_NAME");
        names.insert(LowerCase(name));
        written[LowerCase(name)] = name;
    }
    lclTransfer = names.erase(LowerCase(transferTable)) > 0;
    lclTables.clear();
    for (InstalledTable& table : SystemTables())
        if (names.erase(LowerCase(table.name))) lclTables.push_back(std::move(table));
    lclForeign.clear();
    for (const std::string& name : names) lclForeign.push_back(written[name]);

    const RecordsetPtr columns = lclConnection->OpenSchema(Schema::Columns);
    for (; !columns->Eof(); columns->MoveNext()) {
        const std::string table = NameAt(*columns, "TABLE_NAME");
        for (InstalledTable& known : lclTables)
            if (platform::EqualAsciiNoCase(known.name, table))
                known.columns.push_back(NameAt(*columns, "COLUMN_NAME"));
    }
}

std::string Installation::Quoted(std::string_view name) const {
    return lclDialect == schema::Dialect::MySql ? "`" + std::string(name) + "`"
                                                : "[" + std::string(name) + "]";
}

const InstalledTable* Installation::Find(std::string_view name) const {
    for (const InstalledTable& table : lclTables)
        if (platform::EqualAsciiNoCase(table.name, name)) return &table;
    return nullptr;
}

std::int64_t Installation::Number(const std::string& statement) const {
    const RecordsetPtr rows = lclConnection->Open({statement});
    if (rows->Eof())
        throw Error(errors::badEof, "The database gave no number.", "Kavidex", statement);
    return ToInt64(rows->Get(std::size_t{0}));
}

std::int64_t Installation::Count(std::string_view table, std::string_view where) const {
    return Number("Select count(*) as N from " + Quoted(table) +
                  (where.empty() ? "" : " where " + std::string(where)));
}

std::string Installation::Version() const {
    if (!Find("tblSettings") || !Find("tblSettings")->HasColumn("SKey")) return {};
    const RecordsetPtr rows =
        lclConnection->Open({"Select " + Quoted("Value") +
                             " from tblSettings where Section = 'Build' and SKey = 'DbVersion'"});
    return rows->Eof() ? std::string()
                       : LowerCase(platform::Trim(ToText(rows->Get(std::size_t{0}))));
}

std::vector<std::string> Installation::Filled() const {
    std::vector<std::string> filled;
    for (const InstalledTable& table : lclTables) {
        if (table.name == "tblTranslations") continue;
        const bool settings = table.name == "tblSettings" && table.HasColumn("SKey");
        const std::int64_t rows =
            Count(table.name, settings ? "not (Section = 'Build' and SKey = 'DbVersion')" : "");
        if (rows > 0) filled.push_back(std::string(table.name) + " (" + std::to_string(rows) + ")");
    }
    return filled;
}

std::vector<schema::LookupIndex> Installation::MissingIndexes() const {
    std::set<std::string> there;
    const RecordsetPtr rows = lclConnection->OpenSchema(Schema::Indexes);
    for (; !rows->Eof(); rows->MoveNext())
        if (ToInt64(rows->Get("ORDINAL_POSITION")) == 1)
            there.insert(
                LowerCase(NameAt(*rows, "TABLE_NAME") + "." + NameAt(*rows, "COLUMN_NAME")));
    std::vector<schema::LookupIndex> missing;
    for (const schema::LookupIndex& index : schema::LookupIndexes()) {
        const std::string place = std::string(index.table) + "." + std::string(index.column);
        if (Find(index.table) && there.count(LowerCase(place)) == 0) missing.push_back(index);
    }
    return missing;
}

std::string CreateIndex(const schema::LookupIndex& index) {
    return "CREATE INDEX " + std::string(index.name) + " on " + std::string(index.table) + " (" +
           std::string(index.column) + " )";
}

} // namespace kavidex::data::transfer

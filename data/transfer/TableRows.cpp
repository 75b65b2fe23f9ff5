#include "data/transfer/TableRows.h"

#include <algorithm>

#include "platform/text.h"

namespace kavidex::data::transfer {

namespace {

using schema::Dialect;

constexpr std::size_t mostBytes = 1 << 20; // of one statement, well below what servers take

std::string ColumnList(const Installation& database, const RowShape& shape) {
    std::string list;
    for (const std::string& column : shape.columns)
        list += (list.empty() ? "" : ",") + database.Quoted(column);
    return list;
}

std::vector<Field> FieldsOf(const Installation& database, const RowShape& shape) {
    return database.Connection()
        ->Open({"Select " + ColumnList(database, shape) + " from " + database.Quoted(shape.table) +
                " where 1 = 0"})
        ->Fields();
}

std::int64_t SizeOf(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text ? std::max<std::int64_t>(1,
                                         static_cast<std::int64_t>(platform::ToUtf16(*text).size()))
                : 0;
}

// What a parameter is called towards ADO, which the others do not ask.
AdoType ParameterType(const Value& value, AdoType column) {
    if (std::holds_alternative<bool>(value)) return AdoType::Boolean;
    if (std::holds_alternative<std::int64_t>(value)) return AdoType::Integer;
    if (std::holds_alternative<double>(value)) return AdoType::Double;
    const bool longText = column == AdoType::LongVarChar || column == AdoType::LongVarWChar;
    return longText ? AdoType::LongVarWChar : AdoType::VarWChar;
}

} // namespace

RowShape ShapeOf(const InstalledTable& table, const Installation& from, const Installation& to) {
    RowShape shape{std::string(table.name), {std::string(table.key)}, {}, {}};
    for (const std::string& column : table.columns)
        if (!platform::EqualAsciiNoCase(column, table.key)) shape.columns.push_back(column);
    const std::vector<Field> source = FieldsOf(from, shape), target = FieldsOf(to, shape);
    for (std::size_t i = 0; i < shape.columns.size(); ++i) {
        shape.flags.push_back(source[i].type == AdoType::Boolean ||
                              target[i].type == AdoType::Boolean);
        shape.types.push_back(target[i].type);
    }
    return shape;
}

OrderedRows::OrderedRows(const Installation& database, const RowShape& shape, int block,
                         std::optional<std::int64_t> after)
    : lclDatabase(database), lclShape(shape), lclBlock(block), lclAfter(after) {}

bool OrderedRows::Next() {
    if (lclRows && !lclRows->Eof()) lclRows->MoveNext();
    const bool more = lclRows && lclRows->Eof() && lclRows->RecordCount() > 0;
    if (!lclRows || more) {
        const std::string key = lclDatabase.Quoted(lclShape.columns.front());
        const bool limit = lclDatabase.Speaks() == Dialect::MySql;
        const std::string count = std::to_string(lclBlock);
        lclRows = lclDatabase.Connection()->Open(
            {"Select " + (limit ? std::string() : "TOP " + count + " ") +
             ColumnList(lclDatabase, lclShape) + " from " + lclDatabase.Quoted(lclShape.table) +
             (lclAfter ? " where " + key + " > " + std::to_string(*lclAfter) : std::string()) +
             " order by " + key + (limit ? " limit " + count : std::string())});
    }
    if (lclRows->Eof()) return false;
    lclRow.resize(lclShape.columns.size());
    for (std::size_t i = 0; i < lclRow.size(); ++i) {
        lclRow[i] = lclRows->Get(i);
        if (lclShape.flags[i]) {
            const bool flag = ToBool(lclRow[i]);
            lclRow[i] = flag;
        } else if (auto* text = std::get_if<std::string>(&lclRow[i])) {
            text->erase(text->find_last_not_of(' ') + 1);
        }
    }
    lclKey = ToInt64(lclRow.front());
    lclAfter = lclKey;
    return true;
}

std::uint64_t OrderedRows::Sum() const {
    std::uint64_t sum = 0xcbf29ce484222325; // FNV-1a
    const auto add = [&](std::string_view bytes) {
        for (const char c : bytes) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    };
    for (const Value& value : lclRow) {
        if (IsNull(value)) {
            add("n");
        } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
            add({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
        } else {
            add("v");
            add(ToText(value));
        }
        add(std::string_view("\0", 1));
    }
    return sum;
}

RowWriter::RowWriter(const Installation& database, const RowShape& shape)
    : lclDatabase(database), lclShape(shape),
      lclHead("Insert into " + database.Quoted(shape.table) + " (" + ColumnList(database, shape) +
              ") values "),
      // SQL Server takes 2,100 parameters; Access and the embedded engine one row.
      lclMost(database.Speaks() == Dialect::Access
                  ? 1
                  : std::clamp<std::size_t>(2000 / shape.columns.size(), 1, 100)) {
    Connection& connection = *database.Connection();
    if (database.Speaks() == Dialect::SqlServer)
        connection.Execute("SET IDENTITY_INSERT " + database.Quoted(shape.table) + " ON");
    if (database.Speaks() == Dialect::MySql) // a key 0 stays 0
        connection.Execute("SET SESSION sql_mode = CONCAT(@@sql_mode, ',NO_AUTO_VALUE_ON_ZERO')");
}

RowWriter::~RowWriter() {
    if (lclDatabase.Speaks() != Dialect::SqlServer) return;
    try { // one table at a time may have it
        lclDatabase.Connection()->Execute("SET IDENTITY_INSERT " +
                                          lclDatabase.Quoted(lclShape.table) + " OFF");
    } catch (const std::exception&) {
        return; // the connection is gone, and the next statement tells why
    }
}

void RowWriter::Add(const std::vector<Value>& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::int64_t size = SizeOf(row[i]);
        lclBytes += static_cast<std::size_t>(size) * 2 + 16;
        lclPending.push_back({{}, ParameterType(row[i], lclShape.types[i]), 1, size, row[i]});
    }
    if (lclPending.size() >= lclMost * lclShape.columns.size() || lclBytes > mostBytes) Flush();
}

void RowWriter::Flush() {
    if (lclPending.empty()) return;
    std::string marks = "(?";
    for (std::size_t i = 1; i < lclShape.columns.size(); ++i) marks += ",?";
    marks += ")";
    std::string text = lclHead + marks;
    for (std::size_t i = lclShape.columns.size(); i < lclPending.size();
         i += lclShape.columns.size())
        text += "," + marks;
    lclDatabase.Connection()->Open({text, CommandType::Text, std::move(lclPending)});
    lclPending.clear();
    lclBytes = 0;
}

} // namespace kavidex::data::transfer

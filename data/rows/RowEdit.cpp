#include "data/rows/RowEdit.h"

#include <charconv>
#include <limits>

#include "data/Error.h"
#include "platform/text.h"

namespace kavidex::data {

namespace {

constexpr const char* component = "Recordset";

[[noreturn]] void Refuse(std::int32_t number, const std::string& description) {
    throw Error(number, description, component);
}

[[noreturn]] void RefuseValue(const Field& field, const Value& value) {
    Refuse(errors::invalidArgument, "'" + ToText(value).substr(0, 100) +
                                        "' is no value for the field '" + field.name + "'.");
}

bool IsNumberText(std::string_view text) {
    text = platform::TrimView(text);
    if (!text.empty() && text[0] == '+') text.remove_prefix(1);
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

bool IsBooleanText(std::string_view text) {
    text = platform::TrimView(text);
    return platform::EqualAsciiNoCase(text, "true") || platform::EqualAsciiNoCase(text, "false");
}

struct Range {
    std::int64_t low, high;
};

// The whole numbers that a type holds; an empty range for types of other values.
Range RangeOf(AdoType type) {
    using Int32 = std::numeric_limits<std::int32_t>;
    using Int64 = std::numeric_limits<std::int64_t>;
    switch (type) {
    case AdoType::TinyInt: return {-128, 127};
    case AdoType::UnsignedTinyInt: return {0, 255};
    case AdoType::SmallInt: return {-32768, 32767};
    case AdoType::UnsignedSmallInt: return {0, 65535};
    case AdoType::Integer: return {Int32::min(), Int32::max()};
    case AdoType::UnsignedInt: return {0, std::numeric_limits<std::uint32_t>::max()};
    case AdoType::BigInt: return {Int64::min(), Int64::max()};
    case AdoType::UnsignedBigInt: return {0, Int64::max()};
    default: return {1, 0};
    }
}

bool IsFloating(AdoType type) {
    return type == AdoType::Single || type == AdoType::Double || type == AdoType::Currency;
}

// Texts with a declared size; the long ones have none.
bool IsShortText(AdoType type) {
    return type == AdoType::VarWChar || type == AdoType::VarChar || type == AdoType::WChar ||
           type == AdoType::Char || type == AdoType::BStr;
}

bool IsText(AdoType type) {
    return IsShortText(type) || type == AdoType::LongVarWChar || type == AdoType::LongVarChar;
}

std::int64_t CharacterCount(std::string_view text) {
    std::int64_t count = 0;
    for (const char c : text)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
    return count;
}

void CheckLength(const Field& field, const std::string& text) {
    if (!IsShortText(field.type) || field.definedSize <= 0) return;
    const std::int64_t length = CharacterCount(text);
    if (length <= field.definedSize) return;
    Refuse(errors::invalidArgument,
           "A text of " + std::to_string(length) + " characters is too long for the field '" +
               field.name + "', which holds " + std::to_string(field.definedSize) + ".");
}

struct Statement {
    std::string text;
    std::vector<Value> values;
};

bool OfTable(const Field& field, const std::string& table) {
    return !field.baseColumn.empty() && field.baseTable == table;
}

// The one table that the changed fields belong to.
const std::string& TableOf(const std::vector<Field>& fields, const RowChanges& changes) {
    const std::string* table = nullptr;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!changes[i]) continue;
        if (fields[i].baseColumn.empty())
            Refuse(errors::featureNotAvailable,
                   "The field '" + fields[i].name + "' is computed and cannot be written.");
        if (table && *table != fields[i].baseTable)
            Refuse(errors::featureNotAvailable,
                   "The changed fields belong to more than one table.");
        table = &fields[i].baseTable;
    }
    if (!table) Refuse(errors::featureNotAvailable, "The row has no values to write.");
    return *table;
}

// Collects conditions apart, so that they follow whatever the statement begins with.
class Conditions {
public:
    void Add(const std::string& column, const std::string& condition, const Value& value) {
        lclText += lclText.empty() ? " WHERE " : " AND ";
        if (IsNull(value)) {
            lclText += column + " IS NULL";
            return;
        }
        lclText += condition;
        lclValues.push_back(value);
    }
    void AppendTo(Statement& statement) const {
        statement.text += lclText;
        statement.values.insert(statement.values.end(), lclValues.begin(), lclValues.end());
    }

private:
    std::string lclText;
    std::vector<Value> lclValues;
};

// Rows whose keys nobody could tell are not written: a new one could not be found again.
void RefuseTrouble(const RowSource& source, const std::string& table) {
    if (const std::string trouble = source.KeyTrouble(); !trouble.empty())
        Refuse(errors::featureNotAvailable, "The rows of table '" + table +
                                                "' cannot be written: asking for its key failed. " +
                                                trouble);
}

// The row as it was read: its key, then every other value that the engine can compare.
Conditions AsRead(RowSource& source, const std::vector<Field>& fields, const std::string& table,
                  const std::vector<Value>& old) {
    Conditions conditions;
    bool keyed = false;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!OfTable(fields[i], table)) continue;
        const std::string column = source.Quoted(fields[i].baseColumn);
        const std::string condition = fields[i].key ? column + " = ?" : source.SameAs(fields[i]);
        keyed = keyed || fields[i].key;
        if (!condition.empty()) conditions.Add(column, condition, old[i]);
    }
    if (!keyed) {
        RefuseTrouble(source, table);
        Refuse(errors::featureNotAvailable, "The key of table '" + table +
                                                "' is not among the fields, so the row cannot be "
                                                "found again.");
    }
    return conditions;
}

// Fills the fields of `table` in `row` with what the database holds under the keys in `row`.
void ReadAgain(RowSource& source, const std::vector<Field>& fields, const std::string& table,
               std::vector<Value>& row) {
    Statement statement;
    Conditions conditions;
    bool keyed = false;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!OfTable(fields[i], table)) continue;
        const std::string column = source.Quoted(fields[i].baseColumn);
        statement.text += (statement.text.empty() ? "SELECT " : ", ") + column;
        if (!fields[i].key) continue;
        conditions.Add(column, column + " = ?", row[i]);
        keyed = true;
    }
    if (!keyed) return;
    statement.text += " FROM " + source.Quoted(table);
    conditions.AppendTo(statement);
    const ResultRows result = source.Read(statement.text, statement.values);
    if (result.rows.Rows() == 0) return; // removed by someone else just now
    std::size_t column = 0;
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (OfTable(fields[i], table)) result.rows.Read(0, column++, row[i]);
}

[[noreturn]] void RefuseChanged(const std::string& statement) {
    throw Error(errors::rowChanged,
                "The row was changed or removed by another user since it was read.", component,
                statement);
}

} // namespace

Value Coerced(const Field& field, Value value) {
    if (IsNull(value)) return value;
    const auto* text = std::get_if<std::string>(&value);
    if (field.type == AdoType::Boolean) {
        if (text && !IsBooleanText(*text) && !IsNumberText(*text)) RefuseValue(field, value);
        return ToBool(value);
    }
    const Range range = RangeOf(field.type);
    if (range.low <= range.high || IsFloating(field.type)) {
        if (text && !IsNumberText(*text) && !IsBooleanText(*text)) RefuseValue(field, value);
        if (std::holds_alternative<Bytes>(value)) RefuseValue(field, value);
        if (IsFloating(field.type)) return ToDouble(value);
        const std::int64_t number = ToInt64(value);
        if (number < range.low || number > range.high) RefuseValue(field, value);
        return number;
    }
    if (IsText(field.type)) {
        std::string converted = text ? std::move(std::get<std::string>(value)) : ToText(value);
        CheckLength(field, converted);
        return converted;
    }
    return value;
}

std::vector<Value> InsertRow(RowSource& source, const std::vector<Field>& fields,
                             const RowChanges& changes) {
    const std::string& table = TableOf(fields, changes);
    RefuseTrouble(source, table);
    Statement statement{"INSERT INTO " + source.Quoted(table) + " (", {}};
    std::string marks;
    std::vector<Value> row(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!changes[i]) continue;
        statement.text += (marks.empty() ? "" : ", ") + source.Quoted(fields[i].baseColumn);
        marks += marks.empty() ? "?" : ", ?";
        statement.values.push_back(*changes[i]);
        row[i] = *changes[i];
    }
    statement.text += ") VALUES (" + marks + ")";
    source.Run(statement.text, statement.values);
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (OfTable(fields[i], table) && fields[i].key && !changes[i])
            row[i] = source.NewIdentity();
    ReadAgain(source, fields, table, row);
    return row;
}

std::vector<Value> UpdateRow(RowSource& source, const std::vector<Field>& fields,
                             const std::vector<Value>& old, const RowChanges& changes) {
    const std::string& table = TableOf(fields, changes);
    Statement statement{"UPDATE " + source.Quoted(table) + " SET ", {}};
    std::vector<Value> row = old;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!changes[i] || *changes[i] == old[i]) continue; // some engines count no unchanged rows
        if (!statement.values.empty()) statement.text += ", ";
        statement.text += source.Quoted(fields[i].baseColumn) + " = ?";
        statement.values.push_back(*changes[i]);
        row[i] = *changes[i];
    }
    if (statement.values.empty()) return row;
    AsRead(source, fields, table, old).AppendTo(statement);
    if (source.Run(statement.text, statement.values) == 0) RefuseChanged(statement.text);
    return row;
}

void DeleteRow(RowSource& source, const std::vector<Field>& fields, const std::vector<Value>& old) {
    const std::string* table = nullptr;
    for (const Field& field : fields) {
        if (field.baseColumn.empty()) continue;
        if (table && *table != field.baseTable)
            Refuse(errors::featureNotAvailable,
                   "A row of more than one table cannot be deleted through a recordset.");
        table = &field.baseTable;
    }
    if (!table) Refuse(errors::featureNotAvailable, "The rows belong to no table.");
    Statement statement{"DELETE FROM " + source.Quoted(*table), {}};
    AsRead(source, fields, *table, old).AppendTo(statement);
    if (source.Run(statement.text, statement.values) == 0) RefuseChanged(statement.text);
}

} // namespace kavidex::data
